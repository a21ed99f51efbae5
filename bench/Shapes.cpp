// What a rebuild of the shape costs.
