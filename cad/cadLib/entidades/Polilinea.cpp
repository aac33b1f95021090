// Placeholder until the class is written.
