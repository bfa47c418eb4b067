#include "loopback_server.h"

#include <winsock2.h>

#include <algorithm>
#include <stdexcept>

namespace {

void Start() {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) throw std::runtime_error("no sockets");
}

/// The first line's address; empty when the request does not come whole.
std::string ReadPath(SOCKET socket) {
  std::string head;
  char bytes[4096];
  while (head.find("\r\n\r\n") == std::string::npos) {
    const int count = recv(socket, bytes, sizeof bytes, 0);
    if (count <= 0) return {};
    head.append(bytes, static_cast<std::size_t>(count));
  }
  const auto start = head.find(' ') + 1;
  return head.substr(start, head.find(' ', start) - start);
}

}  // namespace

bool TConnection::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const int part = static_cast<int>(std::min<std::size_t>(bytes.size(), 1 << 20));
    const int sent = send(FSocket, bytes.data(), part, 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool TConnection::Answer(std::string_view type, std::string_view body) {
  return Send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: " + std::string(type) +
              "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n") &&
         Send(body);
}

void TConnection::Stall(unsigned ms) const {
  const ULONGLONG end = GetTickCount64() + ms;
  char byte;
  for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
    const auto left = static_cast<long>(end - now);
    timeval time{left / 1000, left % 1000 * 1000};
    fd_set sockets;
    FD_ZERO(&sockets);
    FD_SET(FSocket, &sockets);
    // Something to read is the other side's end: it has nothing more to say.
    if (select(0, &sockets, nullptr, nullptr, &time) > 0 && recv(FSocket, &byte, 1, 0) <= 0) return;
  }
}

void TConnection::Reset() {
  // The server closes the socket when the handler has returned.
  const linger hard{1, 0};
  setsockopt(FSocket, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&hard), sizeof hard);
  FReset = true;
}

TLoopbackServer::TLoopbackServer(THandler handler) : FHandler(std::move(handler)) {
  Start();
  FSocket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  if (bind(FSocket, name, size) != 0 || listen(FSocket, SOMAXCONN) != 0 ||
      getsockname(FSocket, name, &size) != 0) {
    closesocket(FSocket);
    WSACleanup();
    throw std::runtime_error("no port to listen at");
  }
  FPort = ntohs(address.sin_port);
  FListener = std::thread([this] { Listen(); });
}

TLoopbackServer::~TLoopbackServer() {
  {
    const std::lock_guard lock(FLock);
    FClosing = true;
    for (const auto& connection : FConnections) shutdown(connection.FSocket, SD_BOTH);
  }
  shutdown(FSocket, SD_BOTH);
  closesocket(FSocket);
  FListener.join();
  for (auto& connection : FConnections) connection.FThread.join();
  WSACleanup();
}

std::string TLoopbackServer::Address(std::string_view path, std::string_view host) const {
  return "http://" + std::string(host) + ":" + std::to_string(FPort) + std::string(path);
}

std::vector<std::string> TLoopbackServer::Requests() const {
  const std::lock_guard lock(FLock);
  return FRequests;
}

void TLoopbackServer::Listen() {
  while (true) {
    const SOCKET accepted = accept(FSocket, nullptr, nullptr);
    const std::lock_guard lock(FLock);
    if (FClosing || accepted == INVALID_SOCKET) {
      if (accepted != INVALID_SOCKET) closesocket(accepted);
      return;
    }
    auto& connection = FConnections.emplace_back();
    connection.FSocket = accepted;
    connection.FThread = std::thread([this, &connection] { Serve(connection); });
  }
}

void TLoopbackServer::Serve(TConnection& connection) {
  connection.FPath = ReadPath(connection.FSocket);
  if (!connection.FPath.empty()) {
    {
      const std::lock_guard lock(FLock);
      FRequests.push_back(connection.FPath);
    }
    FHandler(connection);
  }
  const std::lock_guard lock(FLock);
  if (!connection.FReset) shutdown(connection.FSocket, SD_SEND);
  closesocket(connection.FSocket);
  connection.FSocket = INVALID_SOCKET;
}
