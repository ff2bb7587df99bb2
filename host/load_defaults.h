// The values the bound descriptors held when the library was loaded: the
// defaults a page reset writes back. Taken from the descriptors themselves
// once, during the library's static initialisation (before the host, a
// loaded setup or the user can change them), so that the descriptor table
// stays the one place where a default is written down.
#pragma once

// Writes the load-time value of control `number` into `descriptor`, the
// descriptor of that number (its first word, the value, whatever its kind).
// Returns false, changing nothing, for a control that has no bound
// descriptor: the push buttons and the controls without an object.
bool restore_load_value(int number, void* descriptor);
