// What it costs to go to a higher rate and back.
