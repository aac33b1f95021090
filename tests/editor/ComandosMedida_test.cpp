// Placeholder: the measure commands' tests are being written.
