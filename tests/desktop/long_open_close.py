# SPDX-License-Identifier: MIT
"""Opens and closes the port through the Communication dialog again and again while the receiver streams at 115200
baud without a pause, and closes it each time at a random moment. A hang or a crash ends it with an error.

Outside the default test run:  /usr/bin/python3 tests/desktop/long_open_close.py [ROUNDS [SEED]]
"""

import random
import sys
import time

from harness import Port, User
from test_communication import Close, ClosedState, Open, OpenState, Protocol, select, start, wait_state
from test_start import Record

Rate = 115200


def main(rounds, seed):
    randomness = random.Random(seed)
    user = User()
    try:
        user.tidy()
        line = user.connect()
        line.stream(Record, Rate)
        program, dialog = start(user)
        select(dialog, Port, Rate)
        begin = time.monotonic()
        for done in range(1, rounds + 1):
            dialog.press(Open)
            wait_state(dialog, OpenState, 30)
            time.sleep(randomness.uniform(0, 0.5))
            dialog.press(Close)
            wait_state(dialog, ClosedState, 30)
            assert dialog.text(Protocol) == "-" and program.running()
            if done % 10 == 0:
                print(f"{done} of {rounds} rounds", flush=True)
        print(f"{rounds} rounds of open and close in {time.monotonic() - begin:.0f} s, seed {seed}: "
              "no hang, no crash")
        dialog.close()
        user.close()
        assert program.wait_end(30) == 0
    finally:
        user.tidy()
        user.leave()


if __name__ == "__main__":
    given = [int(argument) for argument in sys.argv[1:]]
    main(*given, *(200, 1)[len(given):])
