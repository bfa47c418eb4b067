#include "outside/download_server.h"

#include <map>

namespace {

using TScript = void (*)(TConnection&);

const std::string Whole = TWebServer::Body;
constexpr unsigned Long = 60000;

std::string Ok(const std::string& lines) {
  return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + lines + "\r\n";
}

std::string Declared(std::size_t length) {
  return Ok("Content-Length: " + std::to_string(length) + "\r\n");
}

void SendPieces(TConnection& connection, std::size_t count, std::size_t size, unsigned pause) {
  connection.Send(Declared(count * size));
  const std::string piece(size, 'x');
  for (std::size_t i = 0; i < count && connection.Send(piece); ++i) connection.Stall(pause);
}

const std::map<std::string, TScript> Scripts{
    {"/exact", [](TConnection& c) { c.Send(Declared(Whole.size()) + Whole); }},
    {"/no-length", [](TConnection& c) { c.Send(Ok("") + Whole); }},
    {"/chunked",
     [](TConnection& c) {
       c.Send(Ok("Transfer-Encoding: chunked\r\n") + "a\r\n" + Whole.substr(0, 10) +
              "\r\n1a;note=x\r\n" + Whole.substr(10) + "\r\n0\r\n\r\n");
     }},
    {"/short", [](TConnection& c) { c.Send(Declared(100) + Whole); }},
    {"/extra", [](TConnection& c) { c.Send(Declared(10) + Whole); }},
    {"/204",
     [](TConnection& c) { c.Send("HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n"); }},
    {"/404",
     [](TConnection& c) { c.Send("HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\n\r\nno!"); }},
    {"/500", [](TConnection& c) { c.Send("HTTP/1.1 500 Error\r\nContent-Length: 3\r\n\r\nno!"); }},
    {"/garbage", [](TConnection& c) { c.Send("This is not a web server.\r\n\r\n"); }},
    {"/silent", [](TConnection& c) { c.Stall(Long); }},
    {"/stall",
     [](TConnection& c) {
       c.Send(Declared(100) + Whole);
       c.Stall(Long);
     }},
    {"/byte-a-second", [](TConnection& c) { SendPieces(c, 12, 1, 1000); }},
    {"/stream", [](TConnection& c) { SendPieces(c, 2000, 1000, 1); }},
    {"/endless", [](TConnection& c) { SendPieces(c, 1000000, 2000, 0); }},
    {"/reset",
     [](TConnection& c) {
       c.Send(Declared(100) + Whole);
       c.Stall(200);
       c.Reset();
     }},
    {"/header-1mb",
     [](TConnection& c) {
       std::string lines;
       for (int i = 0; i < 1000; ++i) {
         lines += "X-Line-" + std::to_string(i) + ": " + std::string(1000, 'h') + "\r\n";
       }
       c.Send(Ok(lines + "Content-Length: " + std::to_string(Whole.size()) + "\r\n") + Whole);
     }},
    {"/2.2GB",
     [](TConnection& c) {
       // Without its length: beyond 2^31 bytes, the test platform's client cuts what declares it.
       constexpr std::uint64_t size = 2'200'000'000;
       c.Send(Ok(""));
       const std::string piece(1'000'000, 'x');
       for (std::uint64_t sent = 0; sent < size && c.Send(piece); sent += piece.size()) {
       }
     }},
};

}  // namespace

TWebServer::TWebServer() : FServer([this](TConnection& connection) { Handle(connection); }) {}

void TWebServer::Handle(TConnection& connection) {
  const std::string& path = connection.Path();
  if (path == "/301") return Redirect(connection, 301, "/exact");
  if (path == "/302") return Redirect(connection, 302, "/chunked");
  if (path == "/other-host") return Redirect(connection, 302, Address("/exact", "localhost"));
  if (path == "/circle") return Redirect(connection, 302, "/elsewhere");
  if (path == "/elsewhere") return Redirect(connection, 301, "/circle");
  if (const auto script = Scripts.find(path); script != Scripts.end()) script->second(connection);
}

void TWebServer::Redirect(TConnection& connection, int status, const std::string& target) const {
  connection.Send("HTTP/1.1 " + std::to_string(status) +
                  " Moved\r\nConnection: close\r\nLocation: " + target +
                  "\r\nContent-Length: 0\r\n\r\n");
}
