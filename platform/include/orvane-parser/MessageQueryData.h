#ifndef ORVANE_PARSER_MESSAGE_QUERY_DATA_H
#define ORVANE_PARSER_MESSAGE_QUERY_DATA_H

// A record of the parser library that this device never fills.
class MessageQueryData {
};

#endif
