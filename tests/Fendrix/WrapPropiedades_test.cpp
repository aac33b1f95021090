// PLACEHOLDER: a helper writes this file.
