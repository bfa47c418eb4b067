#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// One HTTP request to a loopback server, and the way to answer it.
class TConnection {
 public:
  const std::string& Path() const { return FPath; }
  /// Bytes as they are; false when the other side, or the server, has gone.
  bool Send(std::string_view bytes);
  /// An answer of status 200 with its length, and the connection's end.
  bool Answer(std::string_view type, std::string_view body);
  /// Does nothing until the other side or the server goes, or the time is over.
  void Stall(unsigned ms) const;
  /// Has the connection broken off when the handler returns, instead of closed.
  void Reset();

 private:
  friend class TLoopbackServer;
  std::uintptr_t FSocket = 0;
  std::string FPath;
  bool FReset = false;
  std::thread FThread;
};

/// A web server on this machine's own loopback address, on a free port: each connection is one
/// request, handled in a thread of its own.
class TLoopbackServer {
 public:
  using THandler = std::function<void(TConnection& connection)>;

  /// Throws std::runtime_error when the network is not there.
  explicit TLoopbackServer(THandler handler);
  TLoopbackServer(const TLoopbackServer&) = delete;
  TLoopbackServer& operator=(const TLoopbackServer&) = delete;
  /// Breaks all connections off and waits for their handlers.
  ~TLoopbackServer();

  int Port() const { return FPort; }
  /// Of a path, which starts with its slash.
  std::string Address(std::string_view path, std::string_view host = "127.0.0.1") const;
  /// The paths asked for so far, in their order.
  std::vector<std::string> Requests() const;

 private:
  void Listen();
  void Serve(TConnection& connection);

  THandler FHandler;
  std::uintptr_t FSocket = 0;
  int FPort = 0;
  mutable std::mutex FLock;
  bool FClosing = false;
  std::list<TConnection> FConnections;
  std::vector<std::string> FRequests;
  std::thread FListener;
};
