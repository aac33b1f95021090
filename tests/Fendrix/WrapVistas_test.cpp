// Placeholder: tests of the facade operations added last are being written.
