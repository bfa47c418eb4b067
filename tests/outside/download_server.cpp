#include "outside/download_server.h"

#include <map>

namespace {

const std::string Whole = TWebServer::Body;
constexpr unsigned Long = 60000;
constexpr char Ok[] = "HTTP/1.1 200 OK\r\nConnection: close\r\n";

std::string Declared(std::size_t length) {
  return Ok + ("Content-Length: " + std::to_string(length) + "\r\n\r\n");
}

const std::string Chunks = Ok + ("Transfer-Encoding: chunked\r\n\r\na\r\n" + Whole.substr(0, 10));

/// Answers that are one text; then the connection ends.
const std::map<std::string, std::string> Answers{
    {"/exact", Declared(Whole.size()) + Whole},
    {"/?q=1", Declared(Whole.size()) + Whole},
    {"/a%20b?c%20d", Declared(Whole.size()) + Whole},
    {"/kept", "HTTP/1.1 200 OK\r\nContent-Length: 36\r\n\r\n" + Whole},
    {"/no-length", Ok + ("\r\n" + Whole)},
    {"/chunked", Chunks + "\r\n1a;note=x\r\n" + Whole.substr(10) + "\r\n0\r\n\r\n"},
    {"/short", Declared(100) + Whole},
    {"/extra", Declared(10) + Whole},
    {"/negative", Ok + ("Content-Length: -36\r\n\r\n" + Whole)},
    {"/no-number", Ok + ("Content-Length: many\r\n\r\n" + Whole)},
    {"/too-much", Ok + ("Content-Length: 268435457\r\n\r\n" + Whole)},
    {"/garbage", "This is not a web server.\r\n\r\n"},
    {"/circle", "HTTP/1.1 302 Moved\r\nConnection: close\r\nLocation: circle\r\n\r\n"},
    {"/to-file", "HTTP/1.1 302 Moved\r\nConnection: close\r\nLocation: file:///C:/\r\n\r\n"},
    {"/to-nowhere", "HTTP/1.1 302 Moved\r\nConnection: close\r\n\r\n"},
};

void SendPieces(TConnection& connection, std::size_t count, std::size_t size, unsigned pause) {
  connection.Send(Declared(count * size));
  const std::string piece(size, 'x');
  for (std::size_t i = 0; i < count && connection.Send(piece); ++i) connection.Stall(pause);
}

void SendThenStall(TConnection& connection, const std::string& start) {
  connection.Send(start);
  connection.Stall(Long);
}

void SendThenReset(TConnection& connection, const std::string& start) {
  connection.Send(start);
  connection.Stall(200);
  connection.Reset();
}

/// Answers that take their time.
const std::map<std::string, void (*)(TConnection&)> Scripts{
    {"/silent", [](TConnection& c) { c.Stall(Long); }},
    {"/header-stall", [](TConnection& c) { SendThenStall(c, Ok); }},
    {"/stall", [](TConnection& c) { SendThenStall(c, Declared(100) + Whole); }},
    {"/chunk-stall", [](TConnection& c) { SendThenStall(c, Chunks + "\r\n"); }},
    {"/chunk-half", [](TConnection& c) { SendThenStall(c, Chunks.substr(0, Chunks.size() - 5)); }},
    {"/reset", [](TConnection& c) { SendThenReset(c, Declared(100) + Whole); }},
    {"/reset-header", [](TConnection& c) { SendThenReset(c, Ok); }},
    {"/byte-a-second", [](TConnection& c) { SendPieces(c, 12, 1, 1000); }},
    {"/stream", [](TConnection& c) { SendPieces(c, 2000, 1000, 1); }},
    {"/endless", [](TConnection& c) { SendPieces(c, 1000000, 2000, 0); }},
    {"/header-1mb",
     [](TConnection& c) {
       std::string lines;
       for (int i = 0; i < 1000; ++i) lines += "X-Line: " + std::string(1000, 'h') + "\r\n";
       c.Send(Ok + lines + "\r\n" + Whole);
     }},
    {"/2.2GB",
     [](TConnection& c) {
       // Without its length: beyond 2^31 bytes, the test platform's client cuts what declares it.
       constexpr std::uint64_t size = 2'200'000'000;
       c.Send(Ok + std::string("\r\n"));
       const std::string piece(1'000'000, 'x');
       for (std::uint64_t sent = 0; sent < size && c.Send(piece); sent += piece.size()) {
       }
     }},
};

}  // namespace

void TWebServer::Handle(TConnection& connection) const {
  const std::string& path = connection.Path();
  if (const auto answer = Answers.find(path); answer != Answers.end()) {
    connection.Send(answer->second);
  } else if (const auto script = Scripts.find(path); script != Scripts.end()) {
    script->second(connection);
  } else {
    // "/303" is the body with that status, "/303/exact" a redirection to "/exact".
    const auto slash = std::min(path.find('/', 1), path.size());
    const std::string target = path.substr(slash);
    connection.Send("HTTP/1.1 " + path.substr(1, slash - 1) + " It is\r\nConnection: close\r\n" +
                    (target.empty() ? "" : "Location: " + target + "\r\n") +
                    "Content-Length: 36\r\n\r\n" + Whole);
  }
}
