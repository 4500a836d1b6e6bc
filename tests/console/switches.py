# SPDX-License-Identifier: MIT
"""The rounds of switches.sh: after a switch, the program must report the receiver's real state."""

import collections
import concurrent.futures
import json
import random
import re
import subprocess
import sys

from streams import Build, Limit, environment

Rates = (1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200)
AtOnce = 10  # they wait most of the time, but a receiver without processor time is not heard
RoundLimit = 120  # s


class WatchedReceiver:
    """A receiver that reports its protocol and rate each second, on standard error."""

    def __init__(self, *options):
        self.process = subprocess.Popen([Build / "toravane-receiver", "-v", *map(str, options)],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.port = self.process.stdout.readline().strip()

    def state(self):
        """Ends it; returns its last protocol and rate."""
        self.process.terminate()
        _, status = self.process.communicate(timeout=Limit)
        last = re.findall(r" s  (NMEA|SiRF) (\d+)  host", status)[-1]
        return {"protocol": last[0].lower(), "rate": int(last[1])}


def faults(chance):
    """Random options of one receiver; the probability of a lost byte is for both directions."""
    options = ["--fault", f"lose={chance.choice((0, 0, 0.0005, 0.002, 0.005))}"]
    kind = chance.choice(("none", "freeze", "elsewhere", "ignored"))
    if kind == "freeze":
        options += ["--fault", f"freeze-after-switch={chance.uniform(0.5, 8):.1f}"]
    if kind == "elsewhere":
        options += ["--fault", f"switch-lands-at={chance.choice(Rates[2:])}"]
    if kind == "ignored":
        options += ["--fault", f"ignore-switches={chance.choice((1, 2))}"]
    return options


def play_round(seed):
    """Returns the exit status and, for a wrong report, the error."""
    chance = random.Random(seed)
    start = chance.choice(("nmea", "sirf")), chance.choice(Rates[2:])
    wanted = chance.choice(("nmea", "sirf")), chance.choice(Rates[2:])
    options = ["--seed", seed, "--protocol", start[0], "--rate", start[1], *faults(chance)]
    receiver = WatchedReceiver(*options)
    try:
        done = ctl(receiver, "switch", wanted[0], wanted[1])
        later = look_again(receiver) if done.returncode in (6, 10) and "lose=0" not in options else None
    finally:
        # A report of the receiver after the program's end.
        receiver.process.stdout.close()
        try:
            receiver.process.wait(1.2)
        except subprocess.TimeoutExpired:
            pass
        state = receiver.state()
    return done.returncode, judge(done, {"protocol": wanted[0], "rate": wanted[1]}, state,
                                  later, f"{start} -> {wanted}, {options}")


def ctl(receiver, *words):
    return subprocess.run([Build / "toravanectl", "--json", "-p", receiver.port, *map(str, words)], capture_output=True,
                          text=True, timeout=RoundLimit, env=environment())


def look_again(receiver):
    """The state in which a probe finds it; on a line that loses bytes, a probe may find nothing."""
    for _ in range(4):
        found = json.loads(ctl(receiver, "probe").stdout)
        if found["exit"] == 0:
            return {"protocol": found["protocol"], "rate": found["rate"]}
    return None


def judge(done, wanted, state, later, round_text):
    def wrong(text):
        return f"{text}: {round_text}: exit {done.returncode}, {done.stdout.strip()} {done.stderr.strip()}; is {state}"
    if done.returncode not in (0, 6, 8, 10):
        return wrong("unexpected exit status")
    result = json.loads(done.stdout)
    if result["exit"] != done.returncode:
        return wrong("two exit statuses")
    if done.returncode in (6, 10):
        # Nothing was heard before, or after. Lost bytes alone excuse that (no receiver here is deaf for longer than
        # it is looked for), and only if it is heard there when one looks again.
        return None if later == state else wrong(f"the receiver is there, and then heard at {later}")
    if result["found"] != state:
        return wrong("the state is another one")
    if (result["found"] == wanted) != (done.returncode == 0):
        return wrong("the exit status does not fit")
    return None


def main():
    rounds, first = int(sys.argv[1]), int(sys.argv[2])
    statuses, failures = collections.Counter(), 0
    with concurrent.futures.ThreadPoolExecutor(AtOnce) as pool:
        seeds = range(first, first + rounds)
        for seed, (status, wrong) in zip(seeds, pool.map(play_round, seeds)):
            statuses[status] += 1
            if wrong:
                failures += 1
                print(f"seed {seed}: {wrong}", flush=True)
    print(f"{rounds - failures} of {rounds} switches ended at a state that is named and true; exit statuses "
          + ", ".join(f"{status}: {count}" for status, count in sorted(statuses.items())))
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
