"""What the sample pictures are drawn with."""
