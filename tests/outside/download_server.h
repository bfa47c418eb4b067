#pragma once

#include <loopback_server.h>

/// What a server on the web may do to a client, good and bad, one path each.
class TWebServer {
 public:
  static constexpr char Body[] = "0123456789abcdefghijklmnopqrstuvwxyz";

  std::string Address(std::string_view path, std::string_view host = "127.0.0.1") const {
    return FServer.Address(path, host);
  }
  std::vector<std::string> Requests() const { return FServer.Requests(); }

 private:
  void Handle(TConnection& connection) const;

  TLoopbackServer FServer{[this](TConnection& connection) { Handle(connection); }};
};
