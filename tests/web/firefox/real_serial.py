# SPDX-License-Identifier: MIT
"""A real Web Serial port in Firefox, from its own chooser to the device that is pulled out; run by real_serial.sh.

Usage: real_serial.py RECEIVER PRELOAD
"""

import subprocess
import sys
import time
from pathlib import Path

Root = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(Root / "tools"), str(Root / "tools" / "desktop")]

from marionette import Firefox  # noqa: E402
from serve_page import Server  # noqa: E402

Pictures = Root / "build" / "web-tests"
Device = Path("/dev/ttyUSB0")
FirstLine = "return document.querySelector('.line').textContent"
Choose = """
    const window = Services.wm.getMostRecentWindow("navigator:browser");
    const notice = window.PopupNotifications.panel.querySelector("popupnotification");
    if (!notice) return "";
    const button = notice.querySelector(".popup-notification-primary-button") ?? notice.button;
    if (button.disabled) {
        const entry = notice.querySelector("menuitem, richlistitem, option, radio");
        entry?.click();
        return "";
    }
    button.click();
    return notice.id;
"""


def status(firefox):
    return firefox.find("status", "Receiver").text


def wait_status(firefox, *parts, seconds=40):
    last = [""]

    def matches():
        last[0] = status(firefox)
        return all(part in last[0] for part in parts)
    try:
        firefox.wait(f"the status has {parts}", matches, seconds)
    except AssertionError as error:
        raise AssertionError(f"{error}; it is {last[0]!r}") from None
    print("status:", last[0])


def wait_running(firefox):
    """Waits until the receiver's time advances: after the first sentence of a connection the program restarts the
    receiver, which then ignores its input for a second."""
    for _ in range(3):
        before = firefox.run(FirstLine)
        firefox.wait("the receiver goes on", lambda: firefox.run(FirstLine) != before)


def menu(firefox, *path):
    for name in path:
        firefox.find("menuitem", name).click()


def value_of(firefox, control):
    return firefox.run("return document.querySelector(`dialog [data-control='${arguments[0]}']`)?.textContent ?? ''",
                       control)


def main():
    receiver_program, preload = sys.argv[1:]
    record = Path("sent.bin")
    receiver = subprocess.Popen([receiver_program, "--link", Device, "--record", record, "--start", "hot",
                                 "--rate", "9600"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    server = Server()
    firefox = Firefox(preload=preload)
    try:
        firefox.size(1000, 760)
        firefox.visit(server.address)
        firefox.wait("the receiver in the page streams",
                     "return /^ UTC: \\d/.test(document.querySelector('.line')?.textContent)")
        print("first look:", status(firefox))

        firefox.find("button", "Connect a receiver").click()
        firefox.wait("Firefox's own chooser", lambda: firefox.in_browser(Choose))
        wait_status(firefox, "NMEA, 9600 baud", "The search found it")
        firefox.screenshot(Pictures / "firefox-connected.png")

        wait_running(firefox)
        print("another rate")
        menu(firefox, "NMEA", "Set Serial Port (Switch to SiRF)")
        firefox.find("combobox", "Baudrate").fill("19200")
        firefox.find("combobox", "Protocol").choose("NMEA")
        firefox.find("button", "Set").click()
        firefox.wait("the command is sent", lambda: b"$PSRF100,1,19200,8,1,0*38\r\n" in record.read_bytes())
        time.sleep(1)
        firefox.find("button", "=Baud").click()
        before = value_of(firefox, 901)
        firefox.wait("sentences arrive", lambda: value_of(firefox, 901) not in ("", before))
        firefox.find("button", "Close dialog").click()
        wait_status(firefox, "NMEA, 19200 baud")

        wait_running(firefox)
        print("to SiRF binary")
        menu(firefox, "NMEA", "Set Serial Port (Switch to SiRF)")
        firefox.find("combobox", "Baudrate").fill("38400")
        firefox.find("combobox", "Protocol").choose("SiRF")
        firefox.find("button", "Set").click()
        time.sleep(1)
        firefox.find("button", "=Baud").click()
        firefox.wait("messages arrive", lambda: value_of(firefox, 1518))
        firefox.screenshot(Pictures / "firefox-set-serial-port.png")
        firefox.find("button", "Close dialog").click()
        wait_status(firefox, "SiRF, 38400 baud")

        wait_running(firefox)
        print("a setting, set and read back")
        menu(firefox, "SiRF", "Power Mask")
        field = firefox.find("textbox", "Tracking Mask [dB-Hz]")
        firefox.wait("the receiver's setting", lambda: field.text == "28")
        field.fill("21")
        firefox.find("textbox", "Navigation Mask [dB-Hz]").fill("24")
        firefox.find("button", "Set").click()
        field.fill("9")
        time.sleep(0.5)
        firefox.find("button", "Get").click()
        firefox.wait("it is read back", lambda: field.text == "21")
        print("read back:", field.text, firefox.find("textbox", "Navigation Mask [dB-Hz]").text)
        firefox.screenshot(Pictures / "firefox-power-mask.png")
        firefox.find("button", "Close").click()

        print("back to NMEA")
        menu(firefox, "SiRF", "Switch to NMEA Protocol")
        firefox.find("combobox", "Baudrate").fill("9600")
        firefox.find("button", "Set").click()
        time.sleep(1)
        firefox.find("button", "=Baud").click()
        firefox.wait("sentences arrive", lambda: value_of(firefox, 901))
        firefox.find("button", "Close").click()
        wait_status(firefox, "NMEA, 9600 baud")

        print("the device is pulled out")
        receiver.kill()
        receiver.wait()
        Device.unlink(missing_ok=True)
        wait_status(firefox, "was pulled out")
        print("alert:", firefox.find("alert", "").run("return arguments[0].querySelector('p').textContent"))
        firefox.screenshot(Pictures / "firefox-pulled-out.png")
    except BaseException:
        print("Screenshot:", firefox.screenshot(Pictures / "firefox-failed.png"))
        print("sent:", record.read_bytes())
        print("the terminal's rate:", subprocess.run(["stty", "-F", Device, "speed"], capture_output=True).stdout)
        raise
    finally:
        receiver.kill()
        firefox.close()
        server.close()
    print("All of it worked.")


if __name__ == "__main__":
    main()
