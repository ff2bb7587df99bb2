// Callbacks of the controls without a control object: the common controls of
// every page and the light colour pair.
#include "host/callbacks.h"
#include "host/spark_export.h"

extern "C" {

// Each of these asks for nothing beyond the host's own redraw until its
// behaviour comes with the control callbacks.
SPARK_EXPORT unsigned long* Blend1CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Overlay1CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Overlay2CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Overlay3CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* SetRes1CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* SetRes2CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* SetRes3CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Auto1CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Auto2CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Auto3CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Reset1CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Reset2CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* Reset3CB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* HelpCB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* GetLightColourCB(int, HostFrameRecord) { return nullptr; }
SPARK_EXPORT unsigned long* SetLightColourCB(int, HostFrameRecord) { return nullptr; }

}  // extern "C"
