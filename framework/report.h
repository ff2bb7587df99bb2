// Reporting to the user: through the host, with a pause so that a message can
// be read before the next one replaces it, echoed on standard error.
#pragma once

// Sleeps for the pause that follows a message. The environment variable
// PANEBURST_MESSAGE_PAUSE, a non-negative factor, scales it (0 for unattended
// runs and tests); unset, the pause is the full length.
void message_pause(unsigned seconds);

// The effect's error report: sparkMessage(text), a 2 second pause, then
// "SPARK_MESSAGE::\t<text>\n" on standard error. Returns that write's result.
int PrintError(const char* text);
