#include "Kifo_iOS_Common_Kit/core/Kifo.h"
