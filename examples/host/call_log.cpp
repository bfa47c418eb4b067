#include "call_log.h"

TCallLog::~TCallLog() {
  if (FFile) std::fclose(FFile);
}

bool TCallLog::Open(const std::wstring& file) {
  FFile = _wfopen(file.c_str(), L"wb");
  return FFile != nullptr;
}

void TCallLog::Clear() { SetWindowTextW(FPane, L""); }

void TCallLog::Add(std::wstring_view line, TDetail detail) {
  const std::wstring text = std::wstring(line) + L"\r\n";
  if (FFile) {
    std::string bytes(text.size() * 3, '\0');
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr);
    std::fwrite(bytes.data(), 1, static_cast<std::size_t>(size), FFile);
    std::fflush(FFile);
  }
  if (FPane && detail == TDetail::Service) {
    const int end = GetWindowTextLengthW(FPane);
    SendMessageW(FPane, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageW(FPane, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
  }
  if (FTrace && detail == TDetail::Service) FTrace(std::wstring(line));
}
