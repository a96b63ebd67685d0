#include "voice/Grammar.h"
#include "voice/Recognizer.h"
#include "voice/Requests.h"
#include "voice/Voice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using voice::Recognition;
using voice::Recognizer;

class RecognizerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(recognizer.open(error)) << error;
        grammar = voice::buildGrammar({{"show recipes", 0}, {"open the fridge camera", 0}, {"set the fridge to", 3}},
                                      [this](const std::string& w) { return recognizer.knows(w); });
        ASSERT_TRUE(recognizer.setGrammar(grammar.jsgf, error)) << error;
    }

    // Speech as a microphone gives it: quiet around the words.
    static std::vector<int16_t> spoken(const std::string& text, const char* voiceName = "en-us")
    {
        voice::SpeechOptions options;
        options.voice = voiceName;
        std::vector<int16_t> speech;
        std::string error;
        EXPECT_TRUE(voice::synthesize(text, options, speech, error)) << error;
        std::vector<int16_t> audio(4800, 0);
        audio.insert(audio.end(), speech.begin(), speech.end());
        audio.insert(audio.end(), 9600, 0);
        return audio;
    }

    Recognition hear(const std::vector<int16_t>& audio, std::vector<std::string>* partials = nullptr)
    {
        recognizer.start();
        for (size_t i = 0; i < audio.size(); i += 320) {
            recognizer.feed(audio.data() + i, std::min<size_t>(320, audio.size() - i));
            if (partials && i % 3200 == 0) {
                const std::string p = recognizer.partial();
                if (!p.empty() && (partials->empty() || partials->back() != p))
                    partials->push_back(p);
            }
        }
        return recognizer.finish();
    }

    void feed(const std::vector<int16_t>& audio, size_t from, size_t to)
    {
        for (size_t i = from; i < to; i += 320)
            recognizer.feed(audio.data() + i, std::min<size_t>(320, to - i));
    }

    Recognizer recognizer;
    voice::Grammar grammar;
};

void expectSame(const Recognition& a, const Recognition& b)
{
    EXPECT_EQ(a.text, b.text);
    EXPECT_EQ(a.score, b.score);
    EXPECT_EQ(a.wordScore, b.wordScore);
    EXPECT_EQ(a.frames, b.frames);
    EXPECT_EQ(a.accepted, b.accepted);
}

TEST_F(RecognizerTest, RegisteredCommandIsRecognizedWithPartialsOnTheWay)
{
    std::vector<std::string> partials;
    const Recognition r = hear(spoken("open the fridge camera"), &partials);
    EXPECT_EQ(r.text, "open the fridge camera");
    EXPECT_TRUE(r.accepted) << r.score;
    EXPECT_GT(r.frames, 100);
    ASSERT_FALSE(partials.empty());
    EXPECT_NE(partials.front(), r.text) << "a partial comes before the whole text";
}

TEST_F(RecognizerTest, RequestsAreRecognizedInBothVoices)
{
    for (const char* name : {"en-us", "en+f2"}) {
        const Recognition r = hear(spoken("how much time is left on the timer", name));
        EXPECT_EQ(r.text, "how much time is left on the timer") << name;
        EXPECT_TRUE(r.accepted) << name << " " << r.score;
    }
}

TEST_F(RecognizerTest, ResultDoesNotDependOnTheUtterancesBefore)
{
    const std::vector<int16_t> audio = spoken("show recipes");
    const Recognition first = hear(audio);
    hear(spoken("what's the weather today"));
    const Recognition again = hear(audio);
    EXPECT_EQ(first.text, again.text);
    EXPECT_EQ(first.score, again.score);
}

TEST_F(RecognizerTest, PassSettledAtTheEndGivesWhatFinishingGives)
{
    const std::vector<int16_t> audio = spoken("open the fridge camera");
    const Recognition whole = hear(audio);
    recognizer.start();
    feed(audio, 0, audio.size());
    recognizer.settle();
    const Recognition settled = recognizer.finish();
    EXPECT_EQ(settled.text, "open the fridge camera");
    expectSame(settled, whole);
}

TEST_F(RecognizerTest, AudioAfterTheSettledPointIsNotHeard)
{
    const std::vector<int16_t> first = spoken("show recipes");
    const std::vector<int16_t> second = spoken("open the fridge camera");
    recognizer.start();
    feed(first, 0, first.size());
    recognizer.settle();
    feed(second, 0, second.size());
    const Recognition r = recognizer.finish();
    EXPECT_EQ(r.text, "show recipes");
    EXPECT_TRUE(r.accepted) << r.score;
}

TEST_F(RecognizerTest, ResumeDropsTheSettledPassAndHearsTheWholeUtterance)
{
    const std::vector<int16_t> audio = spoken("open the fridge camera");
    const Recognition whole = hear(audio);
    const size_t half = audio.size() / 2;
    recognizer.start();
    feed(audio, 0, half);
    recognizer.settle();
    recognizer.settle();  // already settled: nothing more
    feed(audio, half, audio.size());
    // The streaming pass goes on meanwhile.
    EXPECT_FALSE(recognizer.partial().empty());
    recognizer.resume();
    expectSame(recognizer.finish(), whole);
}

TEST_F(RecognizerTest, SettlingAgainAfterAResumeCoversTheAudioSoFar)
{
    const std::vector<int16_t> audio = spoken("open the fridge camera");
    const Recognition whole = hear(audio);
    recognizer.start();
    feed(audio, 0, audio.size() / 3);
    recognizer.settle();
    feed(audio, audio.size() / 3, audio.size());
    recognizer.resume();
    // The first pass may still run: the second starts after it, on the
    // audio up to the second settling, whatever came since.
    recognizer.settle();
    const std::vector<int16_t> quiet(8000, 0);
    feed(quiet, 0, quiet.size());
    expectSame(recognizer.finish(), whole);
}

TEST_F(RecognizerTest, AnUtteranceAbandonedOrLeftWhileSettlingEndsCleanly)
{
    const std::vector<int16_t> audio = spoken("show recipes");
    recognizer.start();
    feed(audio, 0, audio.size());
    recognizer.settle();
    recognizer.abandon();
    EXPECT_EQ(hear(audio).text, "show recipes");
    {
        Recognizer leftBehind;
        std::string error;
        ASSERT_TRUE(leftBehind.open(error)) << error;
        ASSERT_TRUE(leftBehind.setGrammar(grammar.jsgf, error)) << error;
        leftBehind.start();
        leftBehind.feed(audio.data(), audio.size());
        leftBehind.settle();
    }
}

TEST_F(RecognizerTest, SilenceGivesNoText)
{
    const Recognition r = hear(std::vector<int16_t>(32000, 0));
    EXPECT_EQ(r.text, "");
    EXPECT_FALSE(r.accepted);
}

TEST_F(RecognizerTest, NoiseIsNotTakenForWords)
{
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, 3000.0);
    std::vector<int16_t> audio(32000);
    for (int16_t& s : audio)
        s = static_cast<int16_t>(std::clamp(noise(random), -32768.0, 32767.0));
    const Recognition r = hear(audio);
    EXPECT_FALSE(r.accepted) << "heard \"" << r.text << "\" with score " << r.score;
}

TEST_F(RecognizerTest, SpeechOutsideTheGrammarIsRejected)
{
    const Recognition r = hear(spoken("the quick brown fox jumps over the lazy dog"));
    EXPECT_FALSE(r.accepted) << "heard \"" << r.text << "\" with score " << r.score;
}

TEST_F(RecognizerTest, SpeechTakenForARequestIsRefusedByTheWordThatFitsWorst)
{
    // Heard as "set a timer for ten minutes": as a whole it scores like the
    // grammar's own, but "timer" over "reminder" fits far worse than the
    // phone loop.
    const Recognition r = hear(spoken("set a reminder for ten minutes"));
    EXPECT_GE(r.score, Recognizer::kMinScore) << r.text;
    EXPECT_LT(r.wordScore, Recognizer::kMinWordScore) << r.text;
    EXPECT_FALSE(r.accepted) << "heard \"" << r.text << "\"";
}

TEST_F(RecognizerTest, HeavilyClippedSpeechIsNotTakenForAnotherCommand)
{
    std::vector<int16_t> audio = spoken("show recipes");
    for (int16_t& s : audio)
        s = static_cast<int16_t>(std::clamp(s * 16, -2000, 2000));
    const Recognition r = hear(audio);
    EXPECT_TRUE(!r.accepted || r.text == "show recipes") << "heard \"" << r.text << "\"";
}

TEST_F(RecognizerTest, OverlongUtteranceIsCutAtItsLimit)
{
    const std::vector<int16_t> speech = spoken("show recipes");
    std::vector<int16_t> audio = speech;
    audio.resize(Recognizer::kMaxSamples + 16000, 0);
    const Recognition r = hear(audio);
    EXPECT_EQ(r.text, "show recipes");
    EXPECT_LE(r.frames, int(Recognizer::kMaxSamples / 160) + 1);
}

TEST(RecognizerModel, MissingModelIsReportedWithWhereItWasLookedFor)
{
    Recognizer recognizer;
    std::string error;
    EXPECT_FALSE(recognizer.open(error, "/nonexistent/model"));
    EXPECT_EQ(error, "no pocketsphinx US English model in /nonexistent/model (want en-us/ and "
                     "cmudict-en-us.dict; Debian's pocketsphinx-en-us has them)");
    EXPECT_FALSE(recognizer.isOpen());
    EXPECT_FALSE(recognizer.knows("timer"));
    EXPECT_FALSE(recognizer.setGrammar("#JSGF V1.0;", error));
    EXPECT_EQ(error, "the recognizer is not open");
    recognizer.start();
    EXPECT_EQ(recognizer.finish().text, "") << "an unopened recognizer hears nothing";
}

TEST(RecognizerModel, DictionaryKnowsEveryWordOfTheRequests)
{
    Recognizer recognizer;
    std::string error;
    ASSERT_TRUE(recognizer.open(error)) << error;
    for (const std::string& word : voice::requestWords())
        EXPECT_TRUE(recognizer.knows(word)) << word;
    EXPECT_FALSE(recognizer.knows("fridgecam"));
    EXPECT_FALSE(recognizer.knows("phone_aa")) << "the phone loop's words are not the grammar's";
}

}  // namespace
