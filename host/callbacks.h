// The control callbacks the descriptors name. The host calls them with its
// argument and the frame record whenever the user changes the control.
//
//   host/callbacks.cpp         dlcb_N: one per control bound to an object
//   host/callback_tails.cpp    DefaultCB and OverlayCB, the shared tails
//   host/common_callbacks.cpp  the controls every page carries
//   host/page_reset.cpp        the Reset button of each page
//   host/light_colour.cpp      the light colour pot and its sliders
//   host/help_button.cpp       the Help buttons
//   host/amplitude_import.cpp  the amplitude import
#pragma once

#include "abi/spark_abi.h"

#define PANEBURST_CALLBACK(name) unsigned long* name(int argument, HostFrameRecord record)

extern "C" {
// Page 0.
PANEBURST_CALLBACK(dlcb_6);
PANEBURST_CALLBACK(dlcb_7);
PANEBURST_CALLBACK(dlcb_8);
PANEBURST_CALLBACK(dlcb_9);
PANEBURST_CALLBACK(dlcb_10);
PANEBURST_CALLBACK(dlcb_11);
PANEBURST_CALLBACK(dlcb_12);
PANEBURST_CALLBACK(dlcb_13);
PANEBURST_CALLBACK(dlcb_14);
PANEBURST_CALLBACK(dlcb_15);
PANEBURST_CALLBACK(dlcb_16);
PANEBURST_CALLBACK(dlcb_17);
PANEBURST_CALLBACK(dlcb_18);
PANEBURST_CALLBACK(dlcb_19);
PANEBURST_CALLBACK(dlcb_20);
PANEBURST_CALLBACK(dlcb_21);
PANEBURST_CALLBACK(dlcb_22);
PANEBURST_CALLBACK(dlcb_23);
PANEBURST_CALLBACK(dlcb_24);
PANEBURST_CALLBACK(dlcb_25);
PANEBURST_CALLBACK(dlcb_26);
PANEBURST_CALLBACK(dlcb_29);
PANEBURST_CALLBACK(dlcb_30);
// Page 1.
PANEBURST_CALLBACK(dlcb_35);
PANEBURST_CALLBACK(dlcb_36);
PANEBURST_CALLBACK(dlcb_38);
PANEBURST_CALLBACK(dlcb_39);
PANEBURST_CALLBACK(dlcb_40);
PANEBURST_CALLBACK(dlcb_42);
PANEBURST_CALLBACK(dlcb_46);
PANEBURST_CALLBACK(dlcb_47);
PANEBURST_CALLBACK(dlcb_49);
PANEBURST_CALLBACK(dlcb_50);
PANEBURST_CALLBACK(dlcb_51);
PANEBURST_CALLBACK(dlcb_52);
PANEBURST_CALLBACK(dlcb_58);
// Page 2.
PANEBURST_CALLBACK(dlcb_64);
PANEBURST_CALLBACK(dlcb_65);
PANEBURST_CALLBACK(dlcb_67);
PANEBURST_CALLBACK(dlcb_69);
PANEBURST_CALLBACK(dlcb_70);
PANEBURST_CALLBACK(dlcb_71);
PANEBURST_CALLBACK(dlcb_72);
PANEBURST_CALLBACK(dlcb_74);
PANEBURST_CALLBACK(dlcb_75);
PANEBURST_CALLBACK(dlcb_76);
PANEBURST_CALLBACK(dlcb_77);
PANEBURST_CALLBACK(dlcb_78);
PANEBURST_CALLBACK(dlcb_79);
PANEBURST_CALLBACK(dlcb_81);
PANEBURST_CALLBACK(dlcb_82);
PANEBURST_CALLBACK(dlcb_83);
PANEBURST_CALLBACK(dlcb_84);
PANEBURST_CALLBACK(dlcb_87);

// Common controls, one copy per page (1: page 0, 2: page 1, 3: page 2).
PANEBURST_CALLBACK(Blend1CB);
PANEBURST_CALLBACK(Overlay1CB);
PANEBURST_CALLBACK(Overlay2CB);
PANEBURST_CALLBACK(Overlay3CB);
PANEBURST_CALLBACK(SetRes1CB);
PANEBURST_CALLBACK(SetRes2CB);
PANEBURST_CALLBACK(SetRes3CB);
PANEBURST_CALLBACK(Auto1CB);
PANEBURST_CALLBACK(Auto2CB);
PANEBURST_CALLBACK(Auto3CB);
PANEBURST_CALLBACK(Reset1CB);
PANEBURST_CALLBACK(Reset2CB);
PANEBURST_CALLBACK(Reset3CB);
PANEBURST_CALLBACK(HelpCB);
// The light colour: pot to sliders, sliders to pot.
PANEBURST_CALLBACK(GetLightColourCB);
PANEBURST_CALLBACK(SetLightColourCB);
// Page 3.
PANEBURST_CALLBACK(import_aiff_CB);
}

// The shared tails (not exported: no descriptor names them).
// DefaultCB re-processes the frame when Auto Preview (page 0) is on and the
// argument is 1, returning the result pixels; otherwise it asks for a viewer
// redraw and returns null.
PANEBURST_CALLBACK(DefaultCB);
// OverlayCB only asks for a viewer redraw.
PANEBURST_CALLBACK(OverlayCB);
