// toravane-replay: recorded receiver logs through the program's own reception.
#include "options.h"
#include "replay.h"

int main(int argumentCount, char** arguments)
{
    ReplayOptions options;
    ParseOptions(argumentCount, arguments, options);
    Replay(options);
    return 0;
}
