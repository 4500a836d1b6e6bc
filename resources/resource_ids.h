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

// ---- Controls -----------------------------------------------------------------------------------------
// Communication
#define CONTROL_COM_PROTOCOL 1653

// Shared by the NMEA command dialogs
#define CONTROL_NMEA_TIME 901
#define CONTROL_NMEA_GREY_BOX 902

// Navigation Initialization
#define CONTROL_NAVINIT_ECEF_X 1011
#define CONTROL_NAVINIT_ECEF_Y 1012
#define CONTROL_NAVINIT_ECEF_Z 1013
#define CONTROL_NAVINIT_CLOCK_OFFSET 1014
#define CONTROL_NAVINIT_TIME_OF_WEEK 1015
#define CONTROL_NAVINIT_WEEK 1016
#define CONTROL_NAVINIT_CHANNELS 1017

// NMEA Set Message Rate: arrival stamps
#define CONTROL_STAMP_GGA 1036
#define CONTROL_STAMP_GLL 1037
#define CONTROL_STAMP_GSA 1038
#define CONTROL_STAMP_GSV 1039
#define CONTROL_STAMP_MSS 10310
#define CONTROL_STAMP_RMC 10311
#define CONTROL_STAMP_VTG 10312
#define CONTROL_STAMP_ZDA 10313
#define CONTROL_STAMP_SRF150 10314
#define CONTROL_STAMP_SRF151 10315
#define CONTROL_STAMP_SRF152 10316
#define CONTROL_STAMP_SRF154 10317
#define CONTROL_STAMP_SRFTXT 10318
#define CONTROL_STAMP_OTHER 10319

// Switch to NMEA Protocol
#define CONTROL_TO_NMEA_BAUDRATE 12912
