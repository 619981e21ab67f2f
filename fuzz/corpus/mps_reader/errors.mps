* comment
$ comment
NAME
ROWS
 X  BAD
COLUMNS
ENDATA
