#include "platform/speech.h"

#include <gtest/gtest.h>

TEST(Speech, SpeaksWhereTheMachineCan) {
  TSpeech speech;
  if (!speech.Usable() || !speech.SetRate(0)) GTEST_SKIP() << "this machine cannot speak";
  for (const int rate : {-3, 10, 0}) {
    EXPECT_TRUE(speech.SetRate(rate));
    EXPECT_EQ(speech.Rate(), rate);
  }
  EXPECT_TRUE(speech.SetRate(99));
  EXPECT_EQ(speech.Rate(), 10);
  EXPECT_TRUE(speech.SetVolume(-5));
  EXPECT_EQ(speech.Volume(), 0);
  const auto voices = speech.Voices();
  EXPECT_FALSE(speech.SetVoice(voices.size()));
  for (std::size_t i = 0; i < voices.size(); ++i) EXPECT_TRUE(speech.SetVoice(i)) << voices[i];
  // Silent, for the volume is 0.
  if (voices.empty() || !speech.Speak("Bonjour")) GTEST_SKIP() << "this machine has no voice";
  speech.Stop();
  EXPECT_FALSE(speech.Speaking());
}
