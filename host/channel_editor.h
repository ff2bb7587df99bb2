// The host's channel editor: the folders of the plug-in's animation channels
// and the channels' short names.
#pragma once

extern "C" {
// Called by the host when it builds the editor. Returns the result of the
// last entry added.
int SparkChannelEditor(void);
}

// Names the channels without the value format of the slider titles
// ("LightZ" for "LightZ: %.3f"). Returns the result of the last naming call.
int RenameChannelEditorEntries();
