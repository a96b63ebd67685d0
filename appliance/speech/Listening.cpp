// Listening turns: the recognizer and the appliance's speech service.
#include "Engine.h"

namespace standin {

namespace {

long long msSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
        .count();
}

}  // namespace

bool Engine::prepareRecognizer()
{
    mWorkStart = std::chrono::steady_clock::now();
    if (mConfig.mSampleRate != 16000) {
        listeningProblem("the recognizer takes 16000 Hz audio; the library is configured for " +
                         std::to_string(mConfig.mSampleRate) + " Hz");
        return false;
    }
    if (!mRecognizer.isOpen()) {
        if (!mRecognizerError.empty()) {
            mListenProblem = "speech recognition is not available: " + mRecognizerError;
            return false;
        }
        std::string error;
        if (!mRecognizer.open(error)) {
            mRecognizerError = error;
            listeningProblem("speech recognition is not available: " + error);
            return false;
        }
    }
    std::string document;
    bool changed = false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        document = mDocument;
        changed = mDocumentChanged;
        mDocumentChanged = false;
    }
    if (changed || !mGrammarReady)
        buildGrammar(document);
    return mGrammarReady;
}

void Engine::buildGrammar(const std::string& document)
{
    Json::Value o = what("grammar");
    std::vector<voice::Command> commands;
    std::string error;
    if (document.empty()) {
        o["problem"] = "no command document yet: the grammar holds the service's requests only";
    } else if (!voice::readCommands(document, commands, error)) {
        o["problem"] = error + ": the grammar holds the service's requests only";
        complain(error.c_str());
    }
    mGrammar = voice::buildGrammar(commands, [this](const std::string& w) { return mRecognizer.knows(w); });
    Json::Value unknown(Json::arrayValue);
    for (const std::string& word : mGrammar.unknownWords) {
        if (!mReportedWords.insert(word).second)
            continue;
        unknown.append(word);
        const std::string message = "the recognizer's dictionary has no word \"" + word +
                                    "\"; it is left out of the grammar";
        complain(message.c_str());
    }
    Json::Value kept(Json::arrayValue);
    for (const voice::GrammarCommand& c : mGrammar.commands)
        kept.append(c.text);
    Json::Value leftOut(Json::arrayValue);
    for (const std::string& why : mGrammar.leftOut)
        leftOut.append(why);
    o["commands"] = kept;
    o["leftOut"] = leftOut;
    o["unknownWords"] = unknown;
    mGrammarReady = mRecognizer.setGrammar(mGrammar.jsgf, error);
    if (!mGrammarReady) {
        o["problem"] = error;
        mListenProblem = "the recognizer has no grammar: " + error;
        complain(error.c_str());
    }
    o["workMs"] = Json::Int64(msSince(mWorkStart));
    observe(o);
}

void Engine::listeningProblem(const std::string& problem)
{
    mListenProblem = problem;
    Json::Value o = what("recognition");
    o["problem"] = problem;
    observe(o);
    complain(problem.c_str());
}

void Engine::startListening()
{
    mListenProblem.clear();
    mListening = prepareRecognizer();
    mHeardSamples = 0;
    mPartial.clear();
    if (mListening)
        mRecognizer.start();
}

void Engine::listenTo(const std::vector<short>& chunk)
{
    if (!mListening)
        return;
    const long before = mHeardSamples;
    mHeardSamples += static_cast<long>(chunk.size());
    mRecognizer.feed(chunk.data(), chunk.size());
    if (mDetector.paused())
        mRecognizer.settle();
    else
        mRecognizer.resume();
    // Partial results while speech goes on.
    if (before / kPartialEverySamples == mHeardSamples / kPartialEverySamples || !mDetector.begun() ||
        mDetector.ended())
        return;
    const std::string partial = mRecognizer.partial();
    if (partial.empty() || partial == mPartial)
        return;
    mPartial = partial;
    Json::Value e(Json::objectValue);
    e["type"] = "partial";
    e["text"] = partial;
    observeDelivery("recognizer", e);
    if (RecognitionListener* listener = recognitionListener())
        listener->onPartialResult(partial);
}

void Engine::observeDelivery(const char* by, const Json::Value& event)
{
    Json::Value o = what("deliver");
    o["by"] = by;
    o["event"] = event;
    observe(o);
}

void Engine::finishListening(std::shared_ptr<Delivery> delivery, bool scripted)
{
    voice::Heard heard;
    heard.speech = mDetector.begun();
    if (mListening) {
        mListening = false;
        const auto decodeStart = std::chrono::steady_clock::now();
        const voice::Recognition r = mRecognizer.finish();
        const long long decodeMs = msSince(decodeStart);
        const std::string said = r.accepted ? voice::matchCommand(mGrammar, r.text) : std::string();
        heard.command = !said.empty();
        heard.speech = heard.speech || r.accepted;
        if (r.accepted)
            heard.text = heard.command ? said : r.text;
        Json::Value o = what("recognition");
        o["text"] = r.text;
        o["score"] = r.score;
        o["wordScore"] = r.wordScore;
        o["accepted"] = r.accepted;
        o["command"] = heard.command;
        o["speechDetected"] = mDetector.begun();
        o["workMs"] = Json::Int64(decodeMs);
        observe(o);
        Json::Value e(Json::objectValue);
        e["type"] = "asr";
        e["text"] = heard.command ? said : "";
        e["engineType"] = "EMBEDDED";
        e["confidence"] = heard.command ? 1 : 0;
        observeDelivery("recognizer", e);
        if (RecognitionListener* listener = recognitionListener())
            listener->onASRResult(e["text"].asString(), "EMBEDDED", e["confidence"].asInt());
    }
    if (!scripted) {
        auto dialogue = std::make_shared<voice::Dialogue>();
        delivery->by = "service";
        if (!mListenProblem.empty()) {
            // Nothing was recognized: the service cannot tell what was said.
            voice::Step step;
            step.events.append(Json::Value(Json::objectValue));
            step.events[0]["type"] = "error";
            step.events[0]["code"] = static_cast<int>(RecognitionListener::RECOGNITION_ERROR_UNKNOWN);
            step.events[0]["message"] = mListenProblem;
            addStep(*delivery, step, dialogue);
        } else {
            addStep(*delivery, dialogue->begin(heard), dialogue);
        }
    }
    deliverNext(delivery);
}

void Engine::addStep(Delivery& delivery, const voice::Step& step, std::shared_ptr<voice::Dialogue> dialogue)
{
    for (const Json::Value& json : step.events) {
        ScriptEvent event;
        event.json = json;
        event.type = json["type"].asString();
        if (event.type == "nlu" && json.isMember("speak"))
            speak(event);
        delivery.events.push_back(std::move(event));
    }
    if (step.awaitsReply)
        delivery.more = [this, dialogue](Delivery& d) {
            std::string reply;
            {
                std::lock_guard<std::mutex> lock(mMutex);
                reply = mDriverResponse;
            }
            addStep(d, dialogue->reply(reply), dialogue);
        };
}

void Engine::speak(ScriptEvent& event)
{
    voice::SpeechOptions options;
    options.sampleRate = kAnswerRate;
    std::vector<int16_t> samples;
    std::string error;
    if (!voice::synthesize(event.json["speak"].asString(), options, samples, error)) {
        Json::Value o = what("synthesis");
        o["problem"] = error;
        observe(o);
        complain(("the spoken answer cannot be synthesized: " + error).c_str());
        event.json["pieces"] = 0;
        return;
    }
    event.speech.resize(samples.size() * 2);
    for (size_t i = 0; i < samples.size(); ++i) {
        const uint16_t v = static_cast<uint16_t>(samples[i]);
        event.speech[2 * i] = static_cast<char>(v & 0xff);
        event.speech[2 * i + 1] = static_cast<char>(v >> 8);
    }
    event.json["speechMs"] = static_cast<Json::UInt>(samples.size() * 1000 / kAnswerRate);
    event.json["pieces"] = static_cast<Json::UInt>((event.speech.size() + kAnswerPieceBytes - 1) / kAnswerPieceBytes);
}

}  // namespace standin
