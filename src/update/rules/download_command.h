#pragma once

/// The numbered commands by which the host drives a download dialog.
enum class TDownloadCommand {
  Result = 1,
  Destroy,
  Status,
  Address,
  Destination,
  CopyBody,
  Start,
  Show,
  Wait,
  Fetch,
  Abort
};

/// Whether a command can be carried out: its number is known and the value that it must have is
/// there. One that cannot changes nothing.
constexpr bool CommandAccepted(int command, bool hasValue) {
  if (command < static_cast<int>(TDownloadCommand::Result) ||
      command > static_cast<int>(TDownloadCommand::Abort)) {
    return false;
  }
  const auto known = static_cast<TDownloadCommand>(command);
  const bool needsValue = known == TDownloadCommand::Result || known == TDownloadCommand::Status;
  return hasValue || !needsValue;
}
