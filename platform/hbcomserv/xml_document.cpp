// placeholder until the unit lands
