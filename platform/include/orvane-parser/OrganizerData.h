#ifndef ORVANE_PARSER_ORGANIZER_DATA_H
#define ORVANE_PARSER_ORGANIZER_DATA_H

// A record of the parser library that this device never fills.
class OrganizerData {
};

#endif
