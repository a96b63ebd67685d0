#include "utils/VcEngineJsonConverter.h"

#include "utils/MarlLog.h"

#include <stdlib.h>

VcEngineJsonConverter::VcEngineJsonConverter()
{
    LOGD("");
}

VcEngineJsonConverter::~VcEngineJsonConverter()
{
    LOGD("");
}

std::string VcEngineJsonConverter::jsonToString(JsonObject* object)
{
    LOGD("");
    std::string retv;
    if (!object) {
        LOGE("There is no json to convert");
        return retv;
    }
    JsonNode* node = json_node_new(JSON_NODE_OBJECT);
    if (!node) {
        LOGE("Failed to create Json Node");
        return retv;
    }
    json_node_set_object(node, object);
    JsonGenerator* generator = json_generator_new();
    if (!generator) {
        LOGE("Failed to get json generator");
    } else {
        json_generator_set_root(generator, node);
        gchar* data = json_generator_to_data(generator, nullptr);
        if (!data) {
            LOGE("Unable to json_generator_to_data");
        } else {
            retv = data;
            LOGD("retv : [%s]", retv.c_str());
        }
        json_node_free(node);
        node = nullptr;
        g_object_unref(generator);
        generator = nullptr;
        free(data);
        data = nullptr;
    }
    if (node)
        json_node_free(node);
    return retv;
}

JsonObject* VcEngineJsonConverter::stringToJson(std::string text)
{
    LOGD("");
    JsonObject* retv = nullptr;
    if (text.empty()) {
        LOGE("There is no string to convert");
        return retv;
    }
    JsonParser* parser = json_parser_new();
    if (!parser) {
        LOGE("There is no json parser allocated");
        return retv;
    }
    if (!json_parser_load_from_data(parser, text.c_str(), static_cast<gssize>(text.size()), nullptr)) {
        LOGE("Failed to json_parser_load_from_data");
        g_object_unref(parser);
        return retv;
    }
    JsonNode* root = json_parser_get_root(parser);
    if (!root || json_node_get_node_type(root) != JSON_NODE_OBJECT) {
        LOGE("rootNode is not JSON_NODE_OBJECT");
        g_object_unref(parser);
        return retv;
    }
    retv = json_node_dup_object(root);
    if (!retv)
        LOGE("Failed to get json_node_get_object");
    g_object_unref(parser);
    return retv;
}
