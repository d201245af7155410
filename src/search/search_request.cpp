#include "search/search_request.h"

const char* SearchModeText(int mode) {
  switch (mode) {
    case SEARCH_NORMAL: return "normal";
    case SEARCH_ANALYZE: return "analyze";
    case SEARCH_PONDERING: return "pondering";
    case SEARCH_PUZZLE: return "puzzle";
    default: return "unknown";
  }
}
