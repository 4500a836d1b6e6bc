"""Opens and closes the port again and again while the receiver streams at 115200 baud without a pause, and
closes it each time at a random moment. No hang and no crash, or it ends with an error.

Outside the default test run:  /usr/bin/python3 tests/desktop/long_open_close.py [ROUNDS [SEED]]
"""

import random
import sys
import time

from harness import Port, User, desktop, wait_for
from test_start import Record


def round_of_start_and_exit(user, line, moment):
    """The program opens the port at its start and closes it at its end."""
    program = user.start()
    user.main_window()
    wait_for("the port is open", lambda: line.rate() == 115200)
    time.sleep(moment)
    user.close()
    code = program.wait_end(30)
    assert code == 0, f"the program ended with code {code}"
    user.programs.remove(program)


def main(rounds, seed):
    randomness = random.Random(seed)
    user = User()
    try:
        user.tidy()
        line = user.connect()
        user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(115200))
        line.stream(Record, 115200)
        start = time.monotonic()
        for done in range(1, rounds + 1):
            round_of_start_and_exit(user, line, randomness.uniform(0, 0.5))
            line.hang_up()
            if done % 10 == 0:
                print(f"{done} of {rounds} rounds", flush=True)
        print(f"{rounds} rounds of open and close in {time.monotonic() - start:.0f} s, seed {seed}: "
              "no hang, no crash")
    finally:
        user.tidy()
        user.leave()


if __name__ == "__main__":
    given = [int(argument) for argument in sys.argv[1:]]
    main(*given, *(200, 1)[len(given):])
