#include "../rules/plain_list.h"
#include "fuzz.h"

static const bool lists = Target("lists", CompareWithThePlainList);
