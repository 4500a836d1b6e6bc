// Every resource and control number of the program, once, by name. Included by the resource script and by
// the code, so it holds nothing but macros.
#pragma once

// ---- Program ------------------------------------------------------------------------------------------
#define ICON_PROGRAM 1
#define STRING_PROGRAM_NAME 200 // class name and title of the main window

// The hand-held layout with a keypad repeats each menu and template at its number plus this.
#define KEYPAD_LAYOUT 100

// ---- Menus and menu bars ------------------------------------------------------------------------------
#define MENU_MAIN 2000
#define MENU_DIALOG 2001 // one "OK" soft key, for dialogs

// ---- Commands: menu items, and the dialog templates that they open ------------------------------------
#define COMMAND_ABOUT 401
#define COMMAND_COMMUNICATION 403
#define COMMAND_EXIT 406
#define COMMAND_GRAPH 408

#define DIALOG_COMMUNICATION 2002
#define DIALOG_NMEA_SET_SERIAL_PORT 2003
#define DIALOG_NMEA_NAVIGATION_INITIALIZATION 2004
#define DIALOG_NMEA_SET_MESSAGE_RATE 2005
#define DIALOG_NMEA_DEVELOPMENT_DATA 2007
#define DIALOG_NMEA_SELECT_DATUM 2008
#define DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT 2009
#define DIALOG_SIRF_INITIALIZE_DATA_SOURCE 2010
#define DIALOG_SIRF_SWITCH_TO_NMEA 2011
#define DIALOG_SIRF_DGPS_SOURCE 2012
#define DIALOG_SIRF_MODE_CONTROL 2013
#define DIALOG_SIRF_DOP_MASK 2014
#define DIALOG_SIRF_DGPS_MODE 2015
#define DIALOG_SIRF_ELEVATION_MASK 2016
#define DIALOG_SIRF_POWER_MASK 2017
#define DIALOG_SIRF_STATIC_NAVIGATION 2018
#define DIALOG_SIRF_TRICKLE_POWER 2019
#define DIALOG_SIRF_SET_MESSAGE_RATE 2020
#define DIALOG_SIRF_LOW_POWER 2021
#define DIALOG_SIRF_SBAS 2022
#define DIALOG_GRAPH_OPTIONS 2023
#define DIALOG_ABOUT 2024
#define DIALOG_SIRF_POLL_SOFTWARE_VERSION 2025
