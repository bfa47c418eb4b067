#include "update_check.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "ansi.h"

namespace {

constexpr char Current[] = "11.02";
constexpr char Offered[] = "11.03";

constexpr char News[] =
    "<html><head><title>ZEF 11.03</title></head><body><h1>ZEF 11.03</h1><ul>"
    "<li>Assistant : constantes additionn&eacute;es</li>"
    "<li>Comptes : plusieurs r&eacute;pertoires</li></ul></body></html>";

/// The new version: large enough, and sent slowly enough, for its progress to be seen.
void SendVersion(TConnection& connection) {
  constexpr int parts = 100;
  constexpr unsigned pause = 80;
  std::string part;
  while (part.size() < 20000) part += "ZEF " + std::string(Offered) + "\r\n";
  connection.Send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                  std::to_string(parts * part.size()) + "\r\n\r\n");
  for (int i = 0; i < parts && connection.Send(part); ++i) connection.Stall(pause);
}

void Serve(TConnection& connection) {
  if (connection.Path() == "/nouveautes.html") {
    connection.Answer("text/html", News);
  } else if (connection.Path() == "/zef.bin") {
    SendVersion(connection);
  } else {
    connection.Send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
  }
}

}  // namespace

std::wstring TUpdateCheck::Ask(const std::wstring& file) {
  if (Downloading()) return L"Un téléchargement est déjà en cours.";
  try {
    if (!FServer) FServer = std::make_unique<TLoopbackServer>(Serve);
  } catch (const std::runtime_error&) {
    return L"Le réseau n'est pas disponible.";
  }
  const int answer =
      FLibrary.AskForDownload(Current, Offered, FServer->Address("/nouveautes.html"));
  if (answer == ZEF_OFFER_IGNORE)
    return L"La version " + ToWide(Offered) + L" ne sera plus signalée.";
  if (answer == ZEF_OFFER_LATER) return L"La mise à jour sera proposée la prochaine fois.";
  FFile = ToAnsi(file).value_or("ZEF-nouveau.bin");
  FDownload = FLibrary.NewUrl();
  if (!FDownload) return L"La fenêtre de téléchargement n'a pas pu être créée.";
  FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_SET_ADDRESS, FServer->Address("/zef.bin"));
  FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_SET_FILE, FFile);
  FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_SHOW);
  FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_START);
  return L"Téléchargement de la version " + ToWide(Offered) + L"…";
}

bool TUpdateCheck::Ended() const {
  int status = 0;
  return FDownload && FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_GET_STATUS, {}, &status) &&
         status != ZEF_DOWNLOAD_RUNNING;
}

std::wstring TUpdateCheck::Finish() {
  int status = 0;
  FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_GET_STATUS, {}, &status);
  Abort();
  if (status != ZEF_DOWNLOAD_RECEIVED)
    return L"Le téléchargement a échoué (" + std::to_wstring(status) + L").";
  std::ifstream file(FFile, std::ios::binary);
  const std::string content(std::istreambuf_iterator<char>(file), {});
  return L"Téléchargé : " + ToWide(FFile.substr(FFile.rfind('\\') + 1)) + L", " +
         std::to_wstring(content.size()) + L" octets, MD5 " + ToWide(FLibrary.Md5(content));
}

void TUpdateCheck::Abort() {
  if (FDownload) FLibrary.CmdUrl(FDownload, ZEF_DOWNLOAD_DESTROY);
  FDownload = nullptr;
}
