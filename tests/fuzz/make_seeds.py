#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Makes the seed corpora of the fuzz targets again, from our own logs and from a fixed random sequence.

The findings of long runs stay: only files named seed-* are replaced."""
import pathlib
import random
import struct

here = pathlib.Path(__file__).parent
data = here.parent / 'data'
logs = [data / name for name in ('cold-start', 'walk-south-west', 'noisy-line')]
nmea = [path.with_suffix('.txt').read_bytes() for path in logs]
sirf = [path.with_suffix('.srf').read_bytes() for path in logs] + [(data / 'wrapped.srf').read_bytes()]
DIALOGS = 23
chance = random.Random(1)


def save(target, name, content):
    folder = here / 'corpus' / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f'seed-{name}').write_bytes(bytes(content))


def some_of(log, size):
    start = chance.randrange(max(1, len(log) - size))
    return log[start:start + size]


def line(text):
    """A text in the form of the targets: characters beyond Latin 1 in two bytes."""
    out = b''
    for c in text:
        code = ord(c)
        out += bytes([code]) if code < 256 else bytes([16 + code // 256, code % 256])
    return out + b'\n'


def reception():
    for dialog in range(DIALOGS + 1):
        for kind, log in (('nmea', chance.choice(nmea)), ('sirf', chance.choice(sirf))):
            save('reception', f'{dialog:02}-{kind}', bytes([dialog, chance.randrange(256)]) + some_of(log, 900))


def replay():
    for number, log in enumerate(nmea + sirf):
        save('replay', f'{number}', bytes([0xFF >> number % 3, 0x33 + number]) + some_of(log, 2500))
    mixed = b''.join(some_of(log, 400) for log in (nmea + sirf))
    for number in range(4):
        save('replay', f'mixed-{number}', bytes([0x15 << number & 0xFF, 0x21]) + mixed)


TEXTS = ('0', '1', '-1', '12', '255', '65535', '-40', '3.14', '0.05', '1000000', '99999999999', '', ' 7 ', '+5',
         '1e9', '12 m', '-2147483648', 'GPGGA', '$PSRF103,0,0,1,1*25', 'ü€', '.', '0.0.0', '1200', '5' * 30)


def dialogs():
    for dialog in range(DIALOGS):
        for keypad in (0, 1):
            content = bytes([dialog, keypad | chance.choice((2, 6, 10, 14, 4))])
            for _ in range(24):
                content += bytes([chance.randrange(250), chance.randrange(256)]) + line(chance.choice(TEXTS))
            for log in (chance.choice(nmea), chance.choice(sirf)):
                content += b'\xFE' + some_of(log, 60).replace(b'\n', b'\r') + b'\n'
            save('dialogs', f'{dialog:02}-{"keypad" if keypad else "touch"}', content + b'\xFF\x64')


def registry():
    names, channels = 7, 10
    values = (0, 1, 2, 5, 8, 9, 10, 255, 65535, 2 ** 31 - 1, 2 ** 31, 2 ** 32 - 1, 20000000, 2 ** 32 - 40)
    for number in range(20):
        size = [(240, 255), (1, 1), (0, 0), (7, 181), (60, 100)][number % 5]
        content = bytes([chance.randrange(256), *size, chance.randrange(6)])
        content += bytes([0, 2, chance.choice((3, 6))]) + bytes([1, 2, chance.randrange(8)])  # port and rate
        content += bytes([2, 2, chance.randrange(8)]) + bytes([3, 2, chance.randrange(8)])
        for _ in range(30):
            name = chance.randrange(names + channels)
            more = chance.randrange(7 if name >= names else 10)
            extra = b'' if name < names - 1 else bytes([more])
            content += bytes([name]) + extra + bytes([chance.randrange(2)]) + struct.pack('<I', chance.choice(values))
        save('registry', f'{number:02}', content)


def names():
    labels = ('Serial Cable', 'BIA,0', 'GPS\\COM:9', 'x' * 70, 'IrCOMM', 'Ünicode ‰', '')
    for number in range(20):
        content = bytes([number % 10 | (16 if number % 3 == 0 else 0)])
        for _ in range(4):
            content += bytes([0, chance.randrange(2)]) + line(chance.choice(labels) or 'K')
            content += bytes([chance.choice((number % 10, chance.randrange(16)))]) + line(chance.choice(labels))
        content += bytes([2, 1 if number % 2 else 0, 0]) + b'\x02' + bytes([chance.randrange(12)])
        content += bytes([2, 2, 1]) + bytes([1]) + line(chance.choice(('IrDA', 'Irda2', 'x' * 70)))
        content += bytes([3]) + line('Irda2') + b'\x00' + b'\x02\x05'
        content += bytes([4, 0]) + line(chance.choice(('\\My Documents', '\\' + 'd' * 60, '', '\\a\\b')))
        content += bytes([5]) + line(chance.choice(('\\a', '\\a.b\\c', '\\log.txt', '.', 'x' * 300))) + bytes([number % 4])
        content += bytes([7]) + line('Made by us ' * (number % 3 * 50))
        content += bytes([8]) + chance.randbytes(68) + bytes([9]) + chance.randbytes(28)
        content += bytes([11]) + chance.randbytes(16)
        save('names', f'{number:02}', content)


def chart():
    for number in range(20):
        size = [(48, 240), (1, 1), (60, 100), (63, 255), (8, 190)][number % 5]
        content = bytes(size)
        for channel in range(10):
            content += bytes([0, channel, 7]) + chance.randbytes(6) if number % 2 else b''
        for which in range(6):
            zero = struct.pack('<f', chance.choice((0.0, 1.5, -3e9, 26363000.0, float('inf'), float('nan'))))
            limit = struct.pack('<i', chance.choice((0, -1, 20000000, 20000008, 2 ** 31 - 1, -2 ** 31)))
            packed = zero if which == 0 else limit if which < 3 else chance.randbytes(4 if which == 5 else 2)
            content += bytes([0, chance.randrange(10), which]) + packed
        content += bytes([1, number % 2, 2, 0, number % 6, 3])
        for second in range(25):
            content += bytes([6, 20]) + struct.pack('<I', 86390 + second * (number + 1))
            content += b''.join(struct.pack('<h', chance.randrange(-32768, 32768)) for _ in range(10))
        save('chart', f'{number:02}', content + bytes([4, 7, 5, 8, 6, 0x7F]) + chance.randbytes(90))


SETTINGS = (143, 139, 140, 137, 133, 138, 136, 151, 167, 170, 53)
PROFILE = '''# 2008-06-21, firmware GSW3.1.1-SW 1.00, /dev/ttyUSB0
static-navigation enabled=off
elevation-mask tracking=5.0 navigation=7.5
power-mask tracking=28 navigation=28
dop-mask selection=auto gdop=8 pdop=8 hdop=8
dgps-source source=sbas frequency=0 bit-rate=0
dgps-mode mode=auto timeout=30
mode-control degraded-mode=direction-clock altitude=0 altitude-hold=auto altitude-source=last \
degraded-timeout=30 dr-timeout=15 track-smoothing=off
trickle-power push-to-fix=off duty-cycle=100.0 on-time=200
low-power max-off-time=30000 max-search-time=120000 push-to-fix-period=1800 adaptive=off
sbas prn=auto mode=integrity timeout=default
'''.encode()
COMMANDS = (
    '--help', 'get --help', '--version', 'help set', 'ports --json', 'probe -p /dev/ttyUSB0', 'get all -b 4800',
    'set elevation-mask tracking=5.0 navigation=-7.5 --force', 'switch nmea 57600 --rates GGA=1,GSV=5', 'rates GGA=1 GSV=0',
    'restart factory -y', 'monitor --for 1.5 --correct-dates --reference 2026-11-21', 'log - --append',
    'convert a b --to gpx -o c', 'profile apply file --through-sirf=57600', 'date -t 0.5', 'relay --tcp 2948 --pty l --write',
    'send sirf 84 00', '-- get', '--rate', '--rate 4801', '-qvn', '-b4800 probe', 'frobnicate', '', '--json --dry-run probe')


def console():
    for number, message in enumerate(SETTINGS):
        for mark, head in (('a', [43, message]), ('b', [19, 0])):
            content = bytes([number] + head) + bytes(chance.choice((0, 1, 2, 5, 30, 50, 255)) for _ in range(63))
            save('console_answers', f'{number:02}-{mark}', content)
    lines = PROFILE.splitlines(keepends=True)
    for number in range(12):
        content = b''.join(chance.sample(lines, number)) if number else PROFILE
        if number % 3 == 2:
            content = content.replace(b'=', chance.choice((b'==', b' =', b'=-', b'=9999999999', b'')), 1)
        save('console_profile', f'{number:02}', content)
    for number, command in enumerate(COMMANDS):
        save('console_arguments', f'{number:02}', command.replace(' ', '\n').encode())
    dated = b'$GPRMC,235959.000,A,4722.6140,N,00832.5020,E,0.00,0.00,070407,,,A\r\n$GPZDA,000001.000,08,04,2007,,\r\n'
    for number, log in enumerate(nmea + sirf):
        save('console_convert', f'{number}', bytes([7 * number]) + some_of(log, 1800))
        save('console_convert', f'{number}-mixed', bytes([255 - number]) + some_of(log, 900) + dated + some_of(log, 300))


for old in here.glob('corpus/*/seed-*'):
    old.unlink()
for make in (reception, dialogs, registry, names, replay, chart, console):
    make()
