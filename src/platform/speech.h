#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The system's speech synthesis. Loaded on first use. One thread only. Texts are in the ANSI code
/// page.
class TSpeech {
 public:
  TSpeech();
  TSpeech(const TSpeech&) = delete;
  TSpeech& operator=(const TSpeech&) = delete;
  /// Falls silent.
  ~TSpeech();

  /// False on a machine that cannot speak; all else does nothing then.
  bool Usable() const { return FVoice != nullptr; }
  /// Begins to say a text, after those that it was given before, and returns at once.
  bool Speak(std::string_view text);
  /// Falls silent, and forgets what it was still to say.
  void Stop();
  bool Speaking() const;

  /// From -10 to 10, 0 being the usual one; others are taken for the nearest.
  bool SetRate(int rate);
  int Rate() const;
  /// From 0 to 100; others are taken for the nearest.
  bool SetVolume(int volume);
  int Volume() const;

  /// The voices of this machine, as the user knows them.
  std::vector<std::string> Voices() const;
  /// By its place in that list; false when it is not there.
  bool SetVoice(std::size_t index);

 private:
  class TVoice;
  std::unique_ptr<TVoice> FVoice;
};
