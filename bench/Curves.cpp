// What curves cost to compile and to read.
