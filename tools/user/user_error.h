#pragma once

#include <stdexcept>

/// A user cannot go on: what was to appear did not, or what was to be used cannot be.
class TUserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
