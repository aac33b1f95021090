// Placeholder: the facade operation list is being written.
