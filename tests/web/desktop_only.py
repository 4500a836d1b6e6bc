# SPDX-License-Identifier: MIT
"""Tests of tests/desktop that cannot run with the page, and why; all others do."""

OtherLayout = "a hand-held device's layout: the page has the one of touch screens and desktops"
Process = "a process with a command line, a window frame or an exit code: a page has none"
SystemPorts = "ports that the system names: a page is told of granted ports only, and searches the one that is chosen"
Wine = "the programs that start the desktop program under Wine"
Leaving = "a box makes everything else in the page unusable, Exit too: who wants to leave closes the tab"
NoName = "the page asks for no name of a log: tests/web/engine_test.mjs opens and downloads one"
Selected = "a port is always selected: the page starts with its own receiver"
Places = "places in the window of the desktop: tests/web/test_dialogs.py compares the page's with the templates"
ColourDialog = "the system's colour dialog: the page has the browser's (tests/web/engine_test.mjs)"
Pixels = "pixels of the desktop's own drawing: the page draws the sky with its own lines and letters"

Reasons = {
    "test_handheld": OtherLayout,
    "test_ports": Wine,
    "test_guide": "walks for a minute through dialogs whose own tests run with the page",
    "test_launcher": Wine,
    "test_texts_fit": "texts measured in the desktop's font: tests/web/test_dialogs.py looks for cut texts in the page",
    "test_boxes::test_refusal_gives_the_keyboard_back[keypad]": OtherLayout,
    "test_boxes::test_refusals_in_a_row_give_the_keyboard_back[keypad]": OtherLayout,
    "test_boxes::test_refusal_over_a_box_of_the_dialog_gives_the_keyboard_back[keypad]": OtherLayout,
    "test_graph::test_every_control_lies_inside_the_dialog": Places,
    "test_graph::test_colour_can_be_chosen": ColourDialog,
    "test_sirf::test_program_closes_while_a_refusal_is_shown": Leaving,
    "test_sirf_dialogs::test_keypad_layout_sets_the_same": OtherLayout,
    "test_sbas::test_keypad_layout": OtherLayout,
    "test_start::test_keypad_menu_items": OtherLayout,
    "test_start::test_first_start_shows_the_about_box": "the page's first visit shows its own receiver at once",
    "test_start::test_first_start_ignores_the_command_line": Process,
    "test_start::test_command_line_is_answered_and_ends_the_program": Process,
    "test_start::test_second_start_brings_the_first_to_the_front": Process,
    "test_start::test_second_start_brings_an_open_box_to_the_front": Process,
    "test_start::test_second_start_brings_a_box_of_the_receiver_to_the_front": Process,
    "test_start::test_two_starts_at_once_give_one_window": Process,
    "test_start::test_unattended_switch_that_the_receiver_refuses": Process,
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
    "test_communication::test_nothing_selected": Selected,
    "test_communication::test_log_holds_what_the_receiver_sent": NoName,
    "test_communication::test_find_port_and_baud": SystemPorts,
    "test_communication::test_ports_of_the_system_are_named": SystemPorts,
    "test_communication::test_report_is_named_after_the_label": SystemPorts,
}
