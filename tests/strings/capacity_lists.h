// The capacities the system uses, per string template, as X-macro lists.
#pragma once

#define KZ_WIDE_CAPACITIES(X)                                                                                \
    X(10) X(15) X(25) X(30) X(48) X(50) X(75) X(100) X(125) X(150) X(200) X(225) X(250) X(500) X(1000) X(2500)
#define KZ_NARROW_CAPACITIES(X)                                                                              \
    X(6)                                                                                                     \
    X(7)                                                                                                     \
    X(8) X(10) X(12) X(14) X(15) X(16) X(20) X(25) X(29) X(30) X(40) X(50) X(75) X(100) X(125) X(150) X(200) \
        X(250) X(500) X(1000) X(2000) X(3000) X(5000)
#define KZ_EVEN_OLD_CAPACITIES(X)                                                                            \
    X(6)                                                                                                     \
    X(8) X(10) X(12) X(14) X(20) X(30) X(40) X(50) X(100) X(150) X(200) X(250) X(500) X(1000) X(3000) X(5000)
#define KZ_UNEVEN_OLD_CAPACITIES(X) X(7) X(15) X(25) X(75) X(125)
