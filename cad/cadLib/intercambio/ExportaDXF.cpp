// Placeholder until the writer is written.
