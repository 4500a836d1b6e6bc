# SPDX-License-Identifier: MIT
"""Tests of tests/desktop that cannot run with the page, and why; all others do."""

OtherLayout = "a hand-held device's layout: the page has the one of touch screens and desktops"
Process = "a process with a command line, a window frame or an exit code: a page has none"
SystemPorts = "ports that the system names: a page is told of granted ports only, and searches the one that is chosen"
Wine = "the programs that start the desktop program under Wine"
Pixels = "pixels of the desktop's own drawing: the page draws the sky with its own lines and letters"

Reasons = {
    "test_handheld": OtherLayout,
    "test_ports": Wine,
    "test_guide": "walks for a minute through dialogs whose own tests run with the page",
    "test_sirf_dialogs::test_keypad_layout_sets_the_same": OtherLayout,
    "test_sbas::test_keypad_layout": OtherLayout,
    "test_start::test_keypad_menu_items": OtherLayout,
    "test_start::test_first_start_shows_the_about_box": "the page's first visit shows its own receiver at once",
    "test_start::test_first_start_ignores_the_command_line": Process,
    "test_start::test_command_line_is_answered_and_ends_the_program": Process,
    "test_start::test_second_start_brings_the_first_to_the_front": Process,
    "test_start::test_second_start_brings_an_open_box_to_the_front": Process,
    "test_start::test_minimising_ends_the_program": Process,
    "test_start::test_minimised_start_shows_the_window": Process,
    "test_start::test_letter_key_toggles_twice": "a key is one event in the page; its letter is not another",
    "test_start::test_port_that_does_not_exist": "the page starts with its own receiver then (test_serial.py)",
    "test_start::test_wrong_page_is_noticed": "draws a dot on the desktop's screen",
    "test_nmea_dialogs::test_static_navigation_is_switched_on_and_off_without_a_user": Process,
    "test_nmea_dialogs::test_switch_names_the_missing_rate_and_ends_the_program": Process,
    "test_sbas::test_plot_is_drawn": Pixels,
    "test_sbas::test_each_fix_draws_once": Pixels,
    "test_sbas::test_plot_follows_the_receiver": Pixels,
    "test_communication::test_find_port_and_baud": SystemPorts,
    "test_communication::test_ports_of_the_system_are_named": SystemPorts,
    "test_communication::test_report_is_named_after_the_label": SystemPorts,
}
