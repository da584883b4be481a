// What kxmath help tells beside the help of the commands.
#include "tools/kxmath/help/topics.h"

#include <array>

namespace kxtool {

namespace {

constexpr const char* kExitCodes = R"(All commands end with the same codes:

  0         there is a result
  1         the data gave no result, or nothing that was to be judged could be judged; the outputs say why
  2         wrong use: an unknown option, a missing argument, a value out of range
  3         an input is missing, unreadable, damaged or unsuitable
  4         an output could not be written
  5         a verdict that --fail-on lists was given
  6         not enough memory
  130, 143  ended by SIGINT, SIGTERM

A value out of tolerance is a result as any other; only --fail-on turns it into code 5.
)";

constexpr const char* kFiles =
    R"(The ending of a name says of which kind a file of points is; kxmath convert takes the kind by --from and --to, too.

  .bin .cloud           clouds of 2-D and 3-D points, in the binary form of the library
  .profiles .set        profile records: profiles with a position, recordings of a sensor
  .csv                  a profile as text
  .table                points as CSV with a header
  .xyz .txt .asc        points as text
  .xyzf                 points as floats, nothing else
  .whl .ban .prw .prr .gauge
                        text of a contact profile gauge
  .ply .pcd .vtp        clouds for viewers
  .npy                  an array for NumPy: points, or a height map
  .gsf .sdf .vti        height maps
  .stl                  a surface of triangles

kxmath info says what a file holds, and where it is damaged.

An output appears with its whole content or not at all. The name - is the standard output. -o is short for the main output
of a command.
)";

constexpr const char* kReports =
    R"(--report FILE writes one HTML page without any other file; it asks a network for nothing. The page is also written when the
data give no result or cannot be read: it then holds the reason, and the raw data as far as they can be read.

--note TEXT puts a note of the operator on top of the page.

The last part of the page says when it was made, with which command line and by which version, and gives the SHA-256 of each
input. SOURCE_DATE_EPOCH, seconds since 1970, sets the time in place of the clock.
)";

constexpr const char* kStation = R"(From two new sensors to the first measured distance:

  kxmath settings init station.ini              a new settings file, each key with its meaning
  kxmath settings fit                           lines and base distance, from passes with known distances
  kxmath settings check station.ini REC...      what is missing in the file, and what does not fit recordings
  kxmath train REC1 REC2 --settings station.ini  the wheels of a pass
  kxmath watch DIR --settings station.ini --out OUT  each pass that arrives in a folder

kxmath simulate DIR writes recordings and matching settings to try this without sensors.
)";

constexpr std::array kTopics = {
    HelpTopic{"exit-codes", "what the exit codes of all commands mean", kExitCodes},
    HelpTopic{"files", "kinds of files and their endings, outputs", kFiles},
    HelpTopic{"reports", "pages of results", kReports},
    HelpTopic{"station", "from new sensors to the first distance", kStation},
};

} // namespace

std::span<const HelpTopic> helpTopics() {
    return kTopics;
}

} // namespace kxtool
