#pragma once

/// Makes the user's locale the rule by which texts compare (text/collation.h). Called as the
/// library loads; needs nothing but the system's kernel library.
void UseLocaleCollation();
