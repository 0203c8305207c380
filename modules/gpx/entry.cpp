#include "GpxConverter.h"

SENMARK_MODULE(senmark_gpx::GpxConverter)
