NAME          SB
ROWS
 N  OBJ
 N  FREE
 LE R1
 G  R2
COLUMNS
    X         OBJ                1.0   R1                 2.0
    Y         R2                -1.5   FREE               1
    E
RHS
    RHS       NOPE               1.0   R1                 4.0
RANGES
    RNG       R1                 0.0   R2                 2.0
BOUNDS
 SB BND       X                  0.5
 FX BND       Y                  3.0
 BV BND       Z
 SC BND       W                 10
 FR BND       E
SETS
 S1 SOS       X                  1.0   Y                  2.0
ENDATA
