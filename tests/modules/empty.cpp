// A library that is no module.
