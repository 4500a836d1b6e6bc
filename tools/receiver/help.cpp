#include "options.h"

namespace receiver
{

const char* const HelpText = R"(NAME
    toravane-receiver - a SiRF receiver in software, on a pseudo-terminal

SYNOPSIS
    toravane-receiver [OPTION]...

DESCRIPTION
    Behaves like a GPS receiver with a SiRF chipset at a serial port: it speaks NMEA or SiRF binary, moves
    along a track under a sky of GPS and SBAS satellites, keeps the settings that a host gives it, and
    answers polls. The path of its terminal is the first line on standard output. It runs until it is
    interrupted (SIGINT, SIGTERM), and then ends with 0.

    The line rate counts. Bytes take ten bit times each, and a host that has set another rate (stty, or
    SetCommState under Wine) gets and sends what a serial line interface makes of the wrong rate: garbage.
    While nobody has the terminal open, what is sent is lost. The terminal starts in raw mode, at the
    receiver's rate.

    A cold start becomes a 2D fix after about 20 s, a 3D fix a few seconds later, and with corrections of an
    SBAS satellite a differential fix after about 40 s. Times without a fix yet count from 1980-01-06.

OPTIONS
  Receiver
    --protocol nmea|sirf    protocol at the start and after a factory reset (nmea)
    --rate RATE             line rate at the start and after a factory reset: 1200, 2400, 4800, 9600, 19200,
                            38400, 57600 or 115200 bit/s (4800)
    --start cold|warm|hot   how the first start goes (cold)
    --firmware TEXT         version text, at most 60 characters
    --refuse LIST           commands that this firmware does not have, by comma: message ids, whose polls are
                            refused as well, and sentences. "--refuse 170,PSRF106" is a receiver without SBAS
                            parameters and without datums; "?139" refuses the poll of 139 alone. May be given
                            several times
    --pivot-week N          the first GPS week (0 to 9999) that the firmware thinks possible: a later date than its
                            1024 weeks is reported 1024 weeks too early, or several times that
    --wrap                  put each SiRF message into a message EE, as some firmware does

  World
    --track TRACK           still; circle, 200 m around at 10 m/s; walk, a square at 1.4 m/s with rests at
                            the corners; eight, with height; or the name of a .gpx file, which is repeated
                            (without times in it: 5 m/s) (circle)
    --position LAT,LON[,HEIGHT]
                            origin of the track, degrees north and east, metres above the ellipsoid
                            (47.3769,8.5417,455)
    --date DATE             UTC at the start, YYYY-MM-DDThh:mm:ss or now (2008-06-21T10:00:00)
    --seed N                for everything random; equal seeds and equal input give equal output (1)

  Faults
    --fault NAME=VALUE      from the start on; may be given several times:
                            lose=P flip=P                chance per byte, both directions
                            checksum=P                   chance per message
                            freeze-after-switch=SECONDS  deaf and mute after a change of protocol or rate
                            switch-lands-at=RATE         a host's switch ends at this rate
                            ignore-switches=N            so many of the host's switches change nothing,
                                                         although a message 129 is acknowledged
                            mute=LIST                    does not carry out and not answer these commands and
                                                         polls; LIST as with --refuse
                            alter=MID:OFFSET:VALUE       keeps VALUE as that byte (0: the MID) of the command
    --script FILE           timed actions, see SCRIPT

  Runs
    --link PATH             a symbolic link to the terminal, removed at the end; an older link is replaced
    --play FILE             send the bytes of FILE instead, at --rate, from when a host opens the terminal;
                            leading lines that begin with '#' are skipped. After the last byte the terminal
                            stays silent, and the program ends when the host closes it
    --repeat                play FILE over and over
    --record FILE           keep what the host has written, as it was written
    --speed FACTOR          let the time of the run, and the line with it, go faster or slower (1)
    --duration SECONDS      end after so much time of the run (0: do not)
    -v, --verbose           a line of status each second on standard error
    -h, --help              this text
    --version               name and version

COMMANDS
    NMEA (PSRFTXT lines say what is wrong with a command after PSRF105,1):
        PSRF100 protocol and rate        PSRF101 restart; prints version, time, position, clock, channels and
        PSRF103 rate of a sentence               rate as PSRFTXT lines
        PSRF105 development data         PSRF106 datum: 21 WGS-84, 178 to 181 Tokyo
    SiRF binary (acknowledged with message 11, refused with message 12):
        53 advanced power     128 restart               129 switch to NMEA      132 poll version (6)
        133 DGPS source       136 mode control          137 DOP mask            138 DGPS mode
        139 elevation mask    140 power mask            143 static navigation   151 trickle power
        152 poll (19)         166 message rate          167 low power           168 poll (43)
        170 SBAS

MESSAGES
    NMEA: GGA GLL GSA GSV RMC VTG MSS ZDA, PSRFTXT, PSRF150 while power is saved. SBAS satellites are
    numbered from 33. At first GGA, GLL, RMC and VTG each second, GSA and GSV every 5 s.
    SiRF binary: 2 4 6 7 9 11 12 13 18 19 27 28 29 41 43 50 255. At first 2, 4, 7, 9 and 41 each second, 27
    and 50 every 5 s, 13 every 30 s. 28 and 29 come with the "NavLib" bit of command 128, 255 with "Debug".

SCRIPT
    A line is TIME ACTION [VALUE]; TIME is seconds of the run, '#' begins a comment.
        lose P, flip P, checksum P, freeze-after-switch SECONDS, switch-lands-at RATE, ignore-switches N
                          as with --fault; 0 ends it
        mute LIST, alter MID:OFFSET:VALUE                         as with --fault, in addition
        burst N           N random bytes
        silence SECONDS   sends nothing
        freeze SECONDS    sends nothing and hears nothing
        vanish SECONDS    the terminal goes away and comes back (path and --link are made anew)
        tunnel SECONDS    no satellite is received: dead reckoning, then no fix
        track NAME        still, circle, walk or eight
        restart KIND      hot, warm, cold or factory
        switch PROTOCOL RATE
        refuse LIST       as with --refuse, in addition
        text TEXT         a PSRFTXT line, or message 255
        quit

EXIT STATUS
    0 when it was ended or has ended; 2, after one line on standard error, for a bad option or script line,
    a file that cannot be used, or a terminal that cannot be made.

EXAMPLES
    toravane-receiver --link /tmp/gps --verbose
    toravane-receiver --protocol sirf --rate 38400 --track walk --refuse 170
    toravane-receiver --play recorded.srf --rate 57600
)";

} // namespace receiver
