// Every template at every capacity the system uses, instantiated with all its members, so
// that each member compiles at each capacity. Built without optimisation: it is compiled,
// not run.
#include "strings/kz_string.h"
#include "strings/kz_string8.h"
#include "tests/strings/capacity_lists.h"

#define KZ_INSTANTIATE_WIDE(n)                                                                               \
    template struct _kzString<n>;                                                                            \
    template struct _kzString_old<n>;
#define KZ_INSTANTIATE_NARROW(n) template struct _kzString8_allSize<n>;
#define KZ_INSTANTIATE_EVEN_OLD(n) template struct _kzString8_evenSize_old<n>;
#define KZ_INSTANTIATE_UNEVEN_OLD(n) template struct _kzString8_UnevenSize_old<n>;

KZ_WIDE_CAPACITIES(KZ_INSTANTIATE_WIDE)
KZ_NARROW_CAPACITIES(KZ_INSTANTIATE_NARROW)
KZ_EVEN_OLD_CAPACITIES(KZ_INSTANTIATE_EVEN_OLD)
KZ_UNEVEN_OLD_CAPACITIES(KZ_INSTANTIATE_UNEVEN_OLD)
