* Feed blending: 100 units of feed from four ingredients at least cost,
* with protein, fat and fibre content limits. The model name is read from
* columns 11-18 of the NAME card.
*        1         2         3         4         5         6
*234567890123456789012345678901234567890123456789012345678901
NAME      BLEND
ROWS
 N  COST
 E  TOTAL
 G  PROTEIN
 L  FAT
 L  FIBRE
 N  WEIGHT
COLUMNS
    CORN      COST              0.30   TOTAL              1.0
    CORN      PROTEIN           0.09   FAT               0.04
    CORN      FIBRE             0.02   WEIGHT             1.0
    SOYMEAL   COST              0.90   TOTAL              1.0
    SOYMEAL   PROTEIN           0.60   FAT               0.01
    SOYMEAL   FIBRE             0.06   WEIGHT             1.2
    OATS      COST              0.25   TOTAL              1.0
    OATS      PROTEIN           0.11   FAT               0.05
    OATS      FIBRE             0.11   WEIGHT             0.8
    FISHMEAL  COST              1.50   TOTAL              1.0
    FISHMEAL  PROTEIN           0.70   FAT               0.09
    FISHMEAL  WEIGHT             1.5
RHS
    RHS       TOTAL            100.0   PROTEIN           20.0
    RHS       FAT                6.0   FIBRE              8.0
RANGES
    RNG       PROTEIN            5.0   FAT                3.0
BOUNDS
 UP BND       CORN              60.0
 LO BND       SOYMEAL            5.0
 UP BND       SOYMEAL           40.0
 UP BND       FISHMEAL          10.0
 LO BND       OATS              10.0
ENDATA
