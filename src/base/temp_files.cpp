#include "base/temp_files.h"
