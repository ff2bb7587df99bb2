// Import of an amplitude key file into the user channel of control 93.
#pragma once

#include "abi/spark_abi.h"

extern "C" {
// Callback of the "Import Amplitude File" button: opens the host's file
// browser in the working directory; the import runs when a file is chosen.
unsigned long* import_aiff_CB(int argument, HostFrameRecord record);
}

// Reads the chosen key file and sets one key of channel 93 per record.
void aiff_file_CB(const char* path);
