// The search settings: plain globals that the search reads directly, holding their defaults from
// program start. Only the settings commands change them, and never during a search.
#pragma once

#define ZEPHRIN_BOOLEAN(name, value) inline bool name = value;
#define ZEPHRIN_INTEGER(name, value, min, max) inline int name = value;
#define ZEPHRIN_INTEGER_ARRAY(name, size, min, max, ...) inline int name[size] = {__VA_ARGS__};
#include "settings/search_settings.inc"
#undef ZEPHRIN_BOOLEAN
#undef ZEPHRIN_INTEGER
#undef ZEPHRIN_INTEGER_ARRAY
