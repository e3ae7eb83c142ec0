#include "tests/platform/Dorn/TestHandle.h"

namespace DornTest {

KIV_OBJECT_DEFINE(Number)

}  // namespace DornTest
