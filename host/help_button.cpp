#include "host/help_button.h"

#include "host/callbacks.h"
#include "host/help.h"
#include "abi/spark_abi.h"
#include "host/spark_export.h"

void open_help(int (*display)(const char* topic)) {
    if (display("paneburst.htm") != 0)
        sparkError("Error in opening help file (failed to spawn netscape process)");
}

extern "C" {

// The browser runs in the background; the viewer is left as it is.
SPARK_EXPORT unsigned long* HelpCB(int, HostFrameRecord) {
    open_help(display_help_topic);
    return nullptr;
}

}  // extern "C"
