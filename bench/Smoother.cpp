// What smoothing a cycle costs.
