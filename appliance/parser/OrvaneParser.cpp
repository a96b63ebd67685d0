// The parser library stand-in. parse() reads the data that the speech
// stand-in puts into an NLU response and, on the caller's thread, either
// hands an action to the listener or answers a driver request through the
// data retriever and hands the answer to the listener.
//
//   {"action": {"agent":..., "actionType":..., "commandName":..., "actionName":...,
//               "spokenText":..., "rawJson":...}}        -> executeOVAction
//   {"driverRequest": {"Server Reqeust": {...}}}         -> getDriverResponse, executeDriverResponse
#include "standin/Observation.h"

#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/ResponseData.h>
#include <dlog.h>
#include <orvane-parser/IParserRetrieveDeviceData.h>
#include <orvane-parser/OrvaneEmbeddedParser.h>
#include <orvane-parser/OrvaneParser.h>
#include <orvane-parser/OrvaneParserListener.h>

#include <map>
#include <memory>
#include <mutex>

namespace {

const char* const kTag = "orvaneparser";

// The parser classes have no room for fields, so each object's listener and
// retriever are kept here, by the object's address.
struct Wiring {
    OrvaneParserListener* listener = nullptr;
    IParserRetrieveDeviceData* retriever = nullptr;
};

std::mutex gMutex;
std::map<const void*, Wiring> gWiring;

Wiring wiringOf(const void* parser)
{
    std::lock_guard<std::mutex> lock(gMutex);
    auto found = gWiring.find(parser);
    return found == gWiring.end() ? Wiring() : found->second;
}

void setListener(const void* parser, OrvaneParserListener* listener)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gWiring[parser].listener = listener;
}

void setRetriever(const void* parser, IParserRetrieveDeviceData* retriever)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gWiring[parser].retriever = retriever;
}

void forget(const void* parser)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gWiring.erase(parser);
}

bool readJson(const std::string& text, Json::Value& root)
{
    Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    return reader->parse(text.data(), text.data() + text.size(), &root, &errors);
}

std::string member(const Json::Value& object, const char* key)
{
    const Json::Value& value = object[key];
    return value.isString() ? value.asString() : std::string();
}

void executeAction(const Wiring& wiring, const Json::Value& action)
{
    Json::Value o(Json::objectValue);
    o["what"] = "executeOVAction";
    for (const char* key : {"agent", "actionType", "commandName", "actionName", "spokenText", "rawJson"})
        o[key] = member(action, key);
    standin::observe(o);
    if (!wiring.listener) {
        dlog_print(DLOG_ERROR, kTag, "parse: no listener for the action");
        return;
    }
    AgentActionDataFrame* frame = new AgentActionDataFrame();
    frame->setActionType(member(action, "actionType"));
    frame->setRawJson(member(action, "rawJson"));
    frame->setCommandName(member(action, "commandName"));
    frame->setActionName(member(action, "actionName"));
    OVActionData* ovAction = new OVActionData();
    ovAction->setActionAgent(member(action, "agent"));
    ovAction->setActionData(frame);
    std::unique_ptr<ResponseData> response(new ResponseData());
    response->setSpokenText(member(action, "spokenText"));
    response->setOvActionData(ovAction);
    wiring.listener->executeOVAction(response.get());
}

void answerDriverRequest(const Wiring& wiring, const Json::Value& request)
{
    const std::string requestText = standin::toText(request);
    IParserRetrieveUserCustomizedData* customized =
        wiring.retriever ? wiring.retriever->getParserRetrieveUserCustomizedData() : nullptr;
    const std::string answer = customized ? customized->getDriverResponse(requestText) : std::string();
    Json::Value o(Json::objectValue);
    o["what"] = "driverRequest";
    o["request"] = requestText;
    o["response"] = answer;
    standin::observe(o);
    if (answer.empty())
        return;
    if (!wiring.listener) {
        dlog_print(DLOG_ERROR, kTag, "parse: no listener for the driver response");
        return;
    }
    wiring.listener->executeDriverResponse(answer);
}

void parseFor(const void* parser, const std::string& data, int responseType, bool isLast)
{
    Json::Value o(Json::objectValue);
    o["what"] = "parse";
    o["data"] = data;
    o["responseType"] = responseType;
    o["isLast"] = isLast;
    standin::observe(o);

    Json::Value root;
    if (!readJson(data, root) || !root.isObject()) {
        dlog_print(DLOG_ERROR, kTag, "parse: data is not a JSON object; ignored");
        return;
    }
    const Wiring wiring = wiringOf(parser);
    if (root["action"].isObject())
        executeAction(wiring, root["action"]);
    else if (root["driverRequest"].isObject())
        answerDriverRequest(wiring, root["driverRequest"]);
    else
        dlog_print(DLOG_ERROR, kTag, "parse: neither an action nor a driver request; ignored");
}

}  // namespace

OrvaneParser::OrvaneParser() {}

OrvaneParser::~OrvaneParser()
{
    forget(this);
}

void OrvaneParser::setParserListener(OrvaneParserListener* listener)
{
    setListener(this, listener);
}

void OrvaneParser::setParserDataRetriever(IParserRetrieveDeviceData* dataRetriever)
{
    setRetriever(this, dataRetriever);
}

void OrvaneParser::parse(std::string data, int responseType, bool isLast)
{
    parseFor(this, data, responseType, isLast);
}

OrvaneEmbeddedParser::OrvaneEmbeddedParser() {}

OrvaneEmbeddedParser::~OrvaneEmbeddedParser()
{
    forget(this);
}

void OrvaneEmbeddedParser::setParserListener(OrvaneParserListener* listener)
{
    setListener(this, listener);
}

void OrvaneEmbeddedParser::setParserDataRetriever(IParserRetrieveDeviceData* dataRetriever)
{
    setRetriever(this, dataRetriever);
}

void OrvaneEmbeddedParser::parse(std::string data, int responseType, bool isLast)
{
    parseFor(this, data, responseType, isLast);
}
