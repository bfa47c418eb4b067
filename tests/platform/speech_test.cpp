#include "platform/speech.h"

#include <gtest/gtest.h>

TEST(Speech, SpeaksWhereTheMachineCan) {
  TSpeech speech;
  if (!speech.Usable() || !speech.SetRate(0)) GTEST_SKIP() << "this machine cannot speak";
  const std::pair<int, int> rates[] = {{-3, -3}, {0, 0}, {99, 10}};
  for (const auto& [wanted, kept] : rates)
    EXPECT_TRUE(speech.SetRate(wanted) && speech.Rate() == kept) << wanted;
  EXPECT_TRUE(speech.SetVolume(-5) && speech.Volume() == 0);
  const auto voices = speech.Voices();
  EXPECT_FALSE(speech.SetVoice(voices.size()));
  for (std::size_t i = 0; i < voices.size(); ++i) EXPECT_TRUE(speech.SetVoice(i)) << voices[i];
  // Silent, for the volume is 0.
  if (voices.empty() || !speech.Speak("Bonjour")) GTEST_SKIP() << "this machine has no voice";
  speech.Stop();
  EXPECT_FALSE(speech.Speaking());
}
