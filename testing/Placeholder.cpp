// Makes way for the fakes.
