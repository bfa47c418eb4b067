#include "platform/speech.h"

#include <windows.h>

#include <sapi.h>

#include <algorithm>

#include "platform/code_page.h"
#include "platform/com_ptr.h"
#include "platform/com_session.h"
#include "platform/floating_point.h"

class TSpeech::TVoice {
 public:
  bool Create();
  ISpVoice& operator*() const { return *FVoice; }
  /// The voices to choose from; null when the machine tells none.
  TComPtr<IEnumSpObjectTokens> Tokens() const;
  std::string Name(ISpObjectToken& token) const;

 private:
  TComSession FSession{TComSession::TKind::Com};
  TComPtr<ISpVoice> FVoice;
};

bool TSpeech::TVoice::Create() {
  FVoice = FSession.Make<ISpVoice>(__uuidof(SpVoice), __uuidof(ISpVoice));
  return FVoice != nullptr;
}

TComPtr<IEnumSpObjectTokens> TSpeech::TVoice::Tokens() const {
  const auto category = FSession.Make<ISpObjectTokenCategory>(__uuidof(SpObjectTokenCategory),
                                                              __uuidof(ISpObjectTokenCategory));
  IEnumSpObjectTokens* tokens = nullptr;
  if (!category || FAILED(category->SetId(SPCAT_VOICES, FALSE)) ||
      FAILED(category->EnumTokens(nullptr, nullptr, &tokens))) {
    return nullptr;
  }
  return TComPtr<IEnumSpObjectTokens>(tokens);
}

std::string TSpeech::TVoice::Name(ISpObjectToken& token) const {
  const auto release = FSession.Function<decltype(&CoTaskMemFree)>("CoTaskMemFree");
  LPWSTR text = nullptr;
  if (!release || FAILED(token.GetStringValue(nullptr, &text)) || !text) return {};
  std::string name = ToAnsi(text);
  release(text);
  return name;
}

TSpeech::TSpeech() : FVoice(std::make_unique<TVoice>()) {
  const TFloatingPointMasks masks;
  if (!FVoice->Create()) FVoice.reset();
}

TSpeech::~TSpeech() {
  const TFloatingPointMasks masks;
  Stop();
  FVoice.reset();
}

bool TSpeech::Speak(std::string_view text) {
  const TFloatingPointMasks masks;
  return FVoice &&
         SUCCEEDED((**FVoice).Speak(ToWide(text).c_str(), SPF_ASYNC | SPF_IS_NOT_XML, nullptr));
}

void TSpeech::Stop() {
  const TFloatingPointMasks masks;
  if (FVoice) (**FVoice).Speak(nullptr, SPF_ASYNC | SPF_PURGEBEFORESPEAK, nullptr);
}

bool TSpeech::Speaking() const {
  SPVOICESTATUS status{};
  return FVoice && SUCCEEDED((**FVoice).GetStatus(&status, nullptr)) &&
         status.dwRunningState == SPRS_IS_SPEAKING;
}

bool TSpeech::SetRate(int rate) {
  return FVoice && SUCCEEDED((**FVoice).SetRate(std::clamp(rate, -10, 10)));
}

int TSpeech::Rate() const {
  LONG rate = 0;
  return FVoice && SUCCEEDED((**FVoice).GetRate(&rate)) ? static_cast<int>(rate) : 0;
}

bool TSpeech::SetVolume(int volume) {
  return FVoice && SUCCEEDED((**FVoice).SetVolume(static_cast<USHORT>(std::clamp(volume, 0, 100))));
}

int TSpeech::Volume() const {
  USHORT volume = 0;
  return FVoice && SUCCEEDED((**FVoice).GetVolume(&volume)) ? volume : 0;
}

std::vector<std::string> TSpeech::Voices() const {
  std::vector<std::string> names;
  const auto tokens = FVoice ? FVoice->Tokens() : nullptr;
  ISpObjectToken* token = nullptr;
  while (tokens && tokens->Next(1, &token, nullptr) == S_OK && token) {
    names.push_back(FVoice->Name(*TComPtr<ISpObjectToken>(token)));
  }
  return names;
}

bool TSpeech::SetVoice(std::size_t index) {
  const auto tokens = FVoice ? FVoice->Tokens() : nullptr;
  ISpObjectToken* token = nullptr;
  if (!tokens || FAILED(tokens->Item(static_cast<ULONG>(index), &token)) || !token) return false;
  return SUCCEEDED((**FVoice).SetVoice(TComPtr<ISpObjectToken>(token).get()));
}
