// The Help button of each page (31, 60, 89).
#pragma once

// Opens the help page through `display` (display_help_topic in the plug-in)
// and tells the user when the browser could not be started (`display`
// returned non-zero). Separate from HelpCB so that the failure can be shown
// without a shell that fails to start.
void open_help(int (*display)(const char* topic));
