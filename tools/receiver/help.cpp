// SPDX-License-Identifier: MIT
#include "help.h"

namespace receiver
{

const char* const HelpBefore =
    R"(Behaves like a GPS receiver with a SiRF chipset at a serial port: it speaks NMEA or SiRF binary, moves along a track
under a sky of GPS and SBAS satellites, keeps the settings that a host gives it, and answers polls. The path of its
terminal is the first line on standard output. It runs until it is interrupted (SIGINT, SIGTERM).

The line rate counts. Bytes take ten bit times each, and a host that has set another rate (stty, or SetCommState under
Wine) gets and sends what a serial line interface makes of the wrong rate: garbage. While nobody has the terminal open,
what is sent is lost. The terminal starts in raw mode, at the receiver's rate.

A cold start becomes a 2D fix after about 20 s, a 3D fix a few seconds later, and with corrections of an SBAS satellite
a differential fix after about 40 s. Times without a fix yet count from 1980-01-06.)";

const char* const HelpAfter =
    R"(Values of --fault:
  lose=P, flip=P               chance per byte, both directions
  checksum=P                   chance per message
  freeze-after-switch=SECONDS  deaf and mute after a change of protocol or rate
  switch-lands-at=RATE         a host's switch ends at this rate
  ignore-switches=N            so many of the host's switches change nothing,
                               although a message 129 is acknowledged
  mute=LIST                    does not carry out and not answer these commands
                               and polls; LIST as with --refuse
  alter=MID:OFFSET:VALUE       keeps VALUE as that byte (0: the MID) of the command

NMEA commands:
  PSRF100           protocol and rate
  PSRF101           restart; prints version, time, position, clock, channels and
                    rate as PSRFTXT lines
  PSRF103           rate of a sentence
  PSRF105           development data; PSRFTXT lines then explain refusals
  PSRF106           datum: 21 WGS-84, 178 to 181 Tokyo

SiRF binary commands, acknowledged with message 11, refused with message 12:
  53, 151, 167      advanced power, trickle power, low power
  128, 129          restart, switch to NMEA
  132, 152, 168     polls: version (6), navigation parameters (19), SBAS (43)
  133, 138, 170     DGPS source, DGPS mode, SBAS
  136, 143          mode control, static navigation
  137, 139, 140     DOP, elevation and power mask
  166               message rate

NMEA sentences: GGA GLL GSA GSV RMC VTG MSS ZDA, PSRFTXT, PSRF150 while power is saved. SBAS satellites are numbered
from 33. At first GGA, GLL, RMC and VTG each second, GSA and GSV every 5 s.

SiRF binary messages: 2 4 6 7 9 11 12 13 18 19 27 28 29 41 43 50 255. At first 2, 4, 7, 9 and 41 each second, 27 and 50
every 5 s, 13 every 30 s. 28 and 29 come with the "NavLib" bit of command 128, 255 with "Debug".

A line of a script is TIME ACTION [VALUE], with TIME in seconds of the run; '#' begins a comment.

Actions:
  lose P            and the other faults: as with --fault, but with a blank;
                    0 ends it, where it takes a number
  burst N           N random bytes
  silence SECONDS   sends nothing
  freeze SECONDS    sends nothing and hears nothing
  vanish SECONDS    the terminal goes away and comes back (path and --link are
                    made anew)
  tunnel SECONDS    no satellite is received: dead reckoning, then no fix
  track NAME        still, circle, walk or eight
  restart KIND      hot, warm, cold or factory
  switch PROTOCOL RATE
                    as a host's switch does
  refuse LIST       as with --refuse, in addition
  text TEXT         a PSRFTXT line, or message 255
  quit              ends the program

Exit status:
  0  it was ended, or has ended
  2  a bad option or script line, a file that cannot be read or written, a terminal that cannot be made, output that
     cannot be written; a line on standard error

Examples:
  $ toravane-receiver --link /tmp/gps --verbose
  $ toravane-receiver --protocol sirf --rate 38400 --track walk --refuse 170
  $ toravane-receiver --play recorded.srf --rate 57600)";

} // namespace receiver
