// The help buttons open the plug-in's HTML page in an external browser.
#pragma once

#include <string>

// The shell command that opens `topic` ("paneburst.htm") in the help browser:
// "<browser> -geometry +50+50 file:<root>/dl/help/<page>.htm &".
std::string help_command(const char* topic);

// Runs help_command(topic). Returns 1 when the command could not be started, else 0.
int display_help_topic(const char* topic);
