// recordingService.h - stands in for Plotwerk: takes every message of the protocol, notes it as a
// line of text and answers what the test has scripted.
#ifndef PLW_TESTS_CLIENT_RECORDINGSERVICE_H
#define PLW_TESTS_CLIENT_RECORDINGSERVICE_H

#include "tests/support/privateBus.h"

#include <map>
#include <string>
#include <vector>

struct Answer {
    enum Kind { Reply, Error, Never } kind;
    std::vector<std::string> values; // of a Reply in its order: "2.5", "nan", "-7", "yes", "a name"
};

// What is answered in turn to the calls of the message whose selector begins so; the last answer
// goes on for ever. What is not scripted is answered with "", 0 and no.
using Script = std::map<std::string, std::vector<Answer>>;

Answer reply(std::vector<std::string> values);

// A service process, which owns Plotwerk's name from construction on.
class RecordingService {
  public:
    RecordingService(const PrivateBus &onBus, const Script &script);
    ~RecordingService();
    RecordingService(const RecordingService &) = delete;
    RecordingService &operator=(const RecordingService &) = delete;

    // The messages that came since the last call, a line each, as in
    //   YValueOfDoc:'doc' atX:2.5 indexSerie:3
    // Doubles with "%.17g", booleans as yes and no, a rectangle as {x y width height}. A message is
    // noted before it is answered.
    std::string takeMessages() { return newBytes(notes, taken); }

    // Ends the service as a crash would. Returns when the bus knows.
    void crash();

  private:
    const PrivateBus &bus;
    pid_t service = -1;
    int notes = -1; // a file in memory, shared with the service
    off_t taken = 0;
};

#endif
