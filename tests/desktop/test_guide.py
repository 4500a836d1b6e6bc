# SPDX-License-Identifier: MIT
"""The recipes of the user guide, carried out in the real window with the software receiver."""

import time

from harness import Port, wait_for
from resource_ids import Id


def open_dialog(user, item, caption):
    user.choose(item)
    return user.dialog(caption)


def choose_port_and_search(user):
    dialog = open_dialog(user, Id.COMMAND_COMMUNICATION, "Communication")
    if dialog.control(Id.CONTROL_COM_CLOSE)["enabled"]:
        dialog.press(Id.CONTROL_COM_CLOSE)
        wait_for("the port can be searched", lambda: dialog.control(Id.CONTROL_COM_FIND_BAUD)["enabled"])
    dialog.press(Id.CONTROL_COM_FIND_BAUD)
    # The last text of the search; the protocol may be shown a moment before its rate.
    wait_for("a receiver is found", lambda: dialog.control(Id.CONTROL_COM_CLOSE)["enabled"], 40)
    found = dialog.text(Id.CONTROL_COM_PROTOCOL), dialog.items(Id.CONTROL_COM_BAUDRATE)[1]
    dialog.close()
    return found


def follow(dialog, set_button, follow_button, clock):
    time.sleep(2)  # the hot start, sent when NMEA is recognised: the receiver ignores its input for a second
    dialog.press(set_button)
    time.sleep(1.5)  # the receiver changes
    before = dialog.text(clock)
    dialog.press(follow_button)
    wait_for("the time of the new protocol runs", lambda: dialog.text(clock) not in ("", before))
    shown = dialog.text(clock)
    wait_for("it goes on", lambda: dialog.text(clock) != shown)
    dialog.dismiss("Close")


def to_sirf(user, rate):
    dialog = open_dialog(user, Id.DIALOG_NMEA_SET_SERIAL_PORT, "Set Serial Port")
    dialog.pick(Id.CONTROL_TO_SIRF_BAUDRATE, rate)
    dialog.pick(Id.CONTROL_SERIAL_PROTOCOL, "SiRF")
    follow(dialog, Id.CONTROL_SERIAL_SET, Id.CONTROL_SERIAL_FOLLOW, Id.CONTROL_SIRF_TIME)


def to_nmea(user, rate):
    dialog = open_dialog(user, Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol")
    dialog.pick(Id.CONTROL_TO_NMEA_BAUDRATE, rate)
    follow(dialog, Id.CONTROL_TO_NMEA_SET, Id.CONTROL_TO_NMEA_FOLLOW, Id.CONTROL_NMEA_TIME)


def nmea_rate(user, rate):
    dialog = open_dialog(user, Id.DIALOG_NMEA_SET_SERIAL_PORT, "Set Serial Port")
    dialog.pick(Id.CONTROL_TO_SIRF_BAUDRATE, rate)
    dialog.pick(Id.CONTROL_SERIAL_PROTOCOL, "NMEA")
    follow(dialog, Id.CONTROL_SERIAL_SET, Id.CONTROL_SERIAL_FOLLOW, Id.CONTROL_NMEA_TIME)


def factory_reset(user, item, caption, choice, set_button):
    dialog = open_dialog(user, item, caption)
    time.sleep(1)  # the receiver answers
    dialog.press(choice)
    dialog.press(set_button)
    time.sleep(3)
    assert user.dialogs() == [caption]  # no refusal
    dialog.dismiss("Close")


def switch_static_navigation_on(user):
    dialog = open_dialog(user, Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation")

    def shows(value):
        return dialog.control(Id.CONTROL_STATIC_NAVIGATION)["checked"] == value
    wait_for("the receiver has answered", lambda: shows(0))
    dialog.press(Id.CONTROL_STATIC_NAVIGATION)
    wait_for("it is ticked", lambda: shows(1))
    dialog.press(Id.CONTROL_STATIC_NAVIGATION_SET)
    dialog.dismiss("Close")
    dialog = open_dialog(user, Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation")
    wait_for("the receiver has kept it", lambda: shows(1))
    dialog.dismiss("Close")


def test_recipes(user):
    user.connect_receiver(38400, "--start", "hot", "--protocol", "sirf")
    user.store(CommPortIdx=Port)  # no rate: it must be searched
    user.start()
    user.main_window()
    assert choose_port_and_search(user) == ("SiRF", "38400")
    to_nmea(user, "9600")
    nmea_rate(user, "4800")

    to_sirf(user, "57600")
    switch_static_navigation_on(user)
    to_nmea(user, "4800")

    factory_reset(user, Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, "Navigation Initialization",
                  Id.CONTROL_NAVINIT_FACTORY_RESET, Id.CONTROL_NAVINIT_SET)
    assert choose_port_and_search(user) == ("SiRF", "38400")
    factory_reset(user, Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source",
                  Id.CONTROL_INIT_FACTORY_RESET, Id.CONTROL_INIT_SET)
